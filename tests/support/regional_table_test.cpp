// The platform's readings of text in five regional settings
// (tests/data/regional/answers.tsv, taken from OLE Automation's own
// conversions; tests/data/regional/overrides.tsv corrects the rows where our
// reader deliberately answers otherwise, each with its reason): the reader
// must give the same answer for every row. The Windows build reads with the
// platform's own conversions, so under Wine it must give Wine's answers: there
// only the overrides for the library's own written forms apply, not those
// that correct Wine to Windows.

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <quillbank/functions.hpp>

#include "support/conversions.hpp"

namespace quillbank::support {
namespace {

std::vector<std::string> Split(const std::string& line) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab == std::string::npos ? std::string::npos : tab - start));
        if (tab == std::string::npos) return fields;
        start = tab + 1;
    }
}

std::vector<std::vector<std::string>> ReadTable(const std::string& name) {
    std::ifstream file(std::string(QUILLBANK_TEST_DATA_DIR) + "/regional/" + name, std::ios::binary);
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        rows.push_back(Split(line));
    }
    return rows;
}

std::string CurrentYear() {
    const std::chrono::year_month_day today{std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now())};
    return std::to_string(static_cast<int>(today.year()));
}

std::string DoubleText(const std::optional<double>& value) {
    if (!value) return "-";
    std::ostringstream out;
    out.precision(17);
    out << *value;
    return out.str();
}

bool SameDouble(const std::string& expected, const std::optional<double>& actual) {
    if (expected == "-" || !actual) return expected == "-" && !actual;
    const double e = std::stod(expected);
    if (std::isnan(e)) return std::isnan(*actual);
    if (std::isinf(e)) return e == *actual;
    return std::fabs(e - *actual) <= 1e-15 * std::fabs(e);
}

class RegionalTable : public ::testing::Test {
protected:
    void TearDown() override { Functions::SetRegionalSettings("en-US"); }
};

// The table with the overrides that apply to this build.
std::vector<std::vector<std::string>> Answers() {
    auto rows = ReadTable("answers.tsv");
    // (locale, input) -> row index
    std::map<std::pair<std::string, std::string>, std::size_t> index;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].size(), 6u) << i;
        index[{rows[i][0], rows[i][1]}] = i;
    }
    static const std::map<std::string, std::size_t> kColumns{{"double", 2}, {"long", 3}, {"bool", 4}, {"date", 5}};
    for (const auto& o : ReadTable("overrides.tsv")) {
        EXPECT_EQ(o.size(), 5u);
#ifdef _WIN32
        if (o[4].find("Wine") != std::string::npos) continue;
#endif
        const auto row = index.find({o[0], o[1]});
        if (row == index.end()) {
            ADD_FAILURE() << "no row for the override " << o[0] << " " << o[1];
            continue;
        }
        rows[row->second][kColumns.at(o[2])] = o[3];
    }
    return rows;
}

// Reads the row's input in the current setting; false, with a failure
// naming both answers, when a reading differs.
bool ReadsAsTheRow(const std::vector<std::string>& r) {
    const std::string& input = r[1];
    const auto d = TextToDouble(input);
    const auto l = TextToLong(input);
    const auto b = TextToBool(input);
    const auto date = TextToDate(input);
    std::string expectedDate = r[5];
    if (!expectedDate.empty() && expectedDate[0] == '@') expectedDate = CurrentYear() + expectedDate.substr(1);
    const std::string gotLong = l ? std::to_string(*l) : "-";
    const std::string gotBool = b ? (*b ? "true" : "false") : "-";
    const std::string gotDate = date ? DateToText(*date) : "-";
    if (SameDouble(r[2], d) && gotLong == r[3] && gotBool == r[4] && gotDate == expectedDate) {
        return true;
    }
    ADD_FAILURE() << r[0] << " '" << input << "': expected " << r[2] << " " << r[3] << " " << r[4] << " "
                  << expectedDate << ", read " << DoubleText(d) << " " << gotLong << " " << gotBool << " " << gotDate;
    return false;
}

TEST_F(RegionalTable, ReadsEveryRowAsThePlatformDoes) {
    const auto rows = Answers();
    ASSERT_GE(rows.size(), 750u);
    std::set<std::string> locales;
    int mismatches = 0;
    for (const auto& r : rows) {
        Functions::SetRegionalSettings(r[0]);
        locales.insert(r[0]);
        mismatches += ReadsAsTheRow(r) ? 0 : 1;
    }
    EXPECT_EQ(mismatches, 0);
    EXPECT_EQ(locales, (std::set<std::string>{"en-US", "en-GB", "de-DE", "fr-FR", "ja-JP"}));
}

// The setting in force without choosing one (on Windows the user's own, which
// Wine takes from LANG) reads as the table's rows for it. Run alone under
// Wine with LANG=de_DE.UTF-8, fr_FR.UTF-8, ... by scripts/test-windows-locales.sh.
TEST(RegionalTableDefault, ReadsTheRowsOfTheSettingInForce) {
    const std::string locale = Functions::RegionalSettings();
    const auto rows = Answers();
    int checked = 0;
    int mismatches = 0;
    for (const auto& r : rows) {
        if (r[0] != locale) continue;
        ++checked;
        mismatches += ReadsAsTheRow(r) ? 0 : 1;
    }
    if (checked == 0) GTEST_SKIP() << "the table has no rows for " << locale;
    EXPECT_EQ(mismatches, 0) << locale;
}

}  // namespace
}  // namespace quillbank::support
