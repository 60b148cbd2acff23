#include "tools/trsctl/StateDirectory.h"

#include <cstdlib>

namespace trs::ctl {

std::filesystem::path stateDirectory()
{
    char const* const state = std::getenv("XDG_STATE_HOME");
    char const* const home = std::getenv("HOME");
    std::filesystem::path directory;
    if (state != nullptr && *state == '/') {
        directory = state;
    } else if (home != nullptr && *home == '/') {
        directory = std::filesystem::path(home) / ".local/state";
    } else {
        return {};
    }
    directory /= "trsctl";
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    return error ? std::filesystem::path() : directory;
}

} // namespace trs::ctl
