#include "PluginLocator.h"

#include "VstPlugin.h"

#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string executableDirectory() {
    char buffer[4096];
    const ssize_t length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
    if (length <= 0) return "";
    std::string path(buffer, static_cast<std::size_t>(length));
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string homeDirectory() {
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home != '\0') return home;
    const passwd* user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

bool isFile(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

} // namespace

std::vector<std::string> PluginLocator::candidates() {
    std::vector<std::string> paths;
    const std::string exeDir = executableDirectory();
    if (!exeDir.empty()) {
        paths.push_back(exeDir + "/" + kFileName);
        paths.push_back(exeDir + "/../ZelAmbiEnc/" + kFileName);
    }
    const std::string home = homeDirectory();
    if (!home.empty()) paths.push_back(home + "/.vst/" + kFileName);
    return paths;
}

std::string PluginLocator::find() {
    std::string looked;
    for (const std::string& path : candidates()) {
        if (isFile(path)) return path;
        looked += "\n  " + path;
    }
    throw PluginError("no plug-in found; looked for" + looked + "\nchoose one with --plugin PATH");
}
