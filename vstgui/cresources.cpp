#include "cresources.h"

#include <cstdio>
#include <map>
#include <string>

namespace VSTGUI {

namespace {
std::map<std::string, ResourceRegistry::Entry>& table() {
    // Built on first use: generated tables register during static
    // initialisation, in an order the linker chooses.
    static std::map<std::string, ResourceRegistry::Entry> entries;
    return entries;
}
} // namespace

void ResourceRegistry::add(const char* name, const unsigned char* data, std::size_t size) {
    if (!name || !data) return;
    table().emplace(name, Entry{data, size});
}

ResourceRegistry::Entry ResourceRegistry::find(const char* name) {
    if (!name) return Entry{nullptr, 0};
    auto it = table().find(name);
    return it == table().end() ? Entry{nullptr, 0} : it->second;
}

void ResourceRegistry::fileNameForId(long id, char* out, std::size_t outSize) {
    if (!out || outSize == 0) return;
    std::snprintf(out, outSize, "bmp%05ld.png", id);
}

} // namespace VSTGUI
