// Prints OLE Automation's own readings of each line of an input file in each
// named locale, as the table tests/data/regional/answers.tsv holds them:
//   locale TAB input TAB double TAB long TAB boolean TAB date
// with "-" where the platform's conversion fails. Doubles are printed with 17
// significant digits; booleans as true/false; dates as the library writes them
// ("YYYY-MM-DD", "YYYY-MM-DD hh:mm:ss", "hh:mm:ss" on the zero date).
//
// Cross-built with MinGW and run under Wine (scripts/collect-regional-answers.sh).

#include <windows.h>
#include <oleauto.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

std::wstring FromUtf8(const std::string& text) {
    const int n = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring out(static_cast<std::size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), n);
    return out;
}

std::string DateText(DATE value) {
    SYSTEMTIME t{};
    if (!VariantTimeToSystemTime(value, &t)) return "?";
    char buffer[64];
    const bool midnight = t.wHour == 0 && t.wMinute == 0 && t.wSecond == 0;
    if (std::trunc(value) == 0) {
        std::snprintf(buffer, sizeof buffer, "%02u:%02u:%02u", t.wHour, t.wMinute, t.wSecond);
    } else if (midnight) {
        std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02u", t.wYear, t.wMonth, t.wDay);
    } else {
        std::snprintf(buffer, sizeof buffer, "%04u-%02u-%02u %02u:%02u:%02u", t.wYear, t.wMonth, t.wDay, t.wHour,
                      t.wMinute, t.wSecond);
    }
    return buffer;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: collect_answers INPUTS LOCALE...\n");
        return 2;
    }
    std::ifstream file(argv[1], std::ios::binary);
    std::vector<std::string> inputs;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) inputs.push_back(line);
    }
    for (int a = 2; a < argc; ++a) {
        const std::wstring name = FromUtf8(argv[a]);
        const LCID lcid = LocaleNameToLCID(name.c_str(), 0);
        if (lcid == 0) {
            std::fprintf(stderr, "unknown locale %s\n", argv[a]);
            return 1;
        }
        for (const auto& input : inputs) {
            const std::wstring wide = FromUtf8(input);
            BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
            std::string row = std::string(argv[a]) + "\t" + input;
            double r8 = 0;
            char buffer[64];
            if (SUCCEEDED(VarR8FromStr(text, lcid, 0, &r8))) {
                std::snprintf(buffer, sizeof buffer, "%.17g", r8);
                row += std::string("\t") + buffer;
            } else {
                row += "\t-";
            }
            LONG i4 = 0;
            if (SUCCEEDED(VarI4FromStr(text, lcid, 0, &i4))) {
                row += "\t" + std::to_string(i4);
            } else {
                row += "\t-";
            }
            VARIANT_BOOL b = 0;
            if (SUCCEEDED(VarBoolFromStr(text, lcid, 0, &b))) {
                row += b ? "\ttrue" : "\tfalse";
            } else {
                row += "\t-";
            }
            DATE d = 0;
            if (SUCCEEDED(VarDateFromStr(text, lcid, 0, &d))) {
                row += "\t" + DateText(d);
            } else {
                row += "\t-";
            }
            SysFreeString(text);
            std::fwrite(row.data(), 1, row.size(), stdout);
            std::fputc('\n', stdout);
        }
    }
    return 0;
}
