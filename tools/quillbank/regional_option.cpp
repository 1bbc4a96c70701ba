#include "regional_option.hpp"

#include <cstdlib>
#include <string_view>

#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>

namespace quillbank::tool {

std::string RegionalSettingFromEnvironment() {
    for (const char* variable : {"LC_ALL", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') {
            continue;
        }
        // "de_DE.UTF-8@euro" -> "de_DE"; "C" and "POSIX" name no region.
        std::string name(value);
        name = name.substr(0, name.find_first_of(".@"));
        if (name == "C" || name == "POSIX" || name.empty()) {
            break;
        }
        const std::string previous = Functions::RegionalSettings();
        try {
            Functions::SetRegionalSettings(name);
            const std::string tag = Functions::RegionalSettings();
            Functions::SetRegionalSettings(previous);
            return tag;
        } catch (const Error&) {
            break;
        }
    }
    return "en-US";
}

}  // namespace quillbank::tool
