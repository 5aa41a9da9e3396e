#pragma once

#include <cstddef>

namespace VSTGUI {

// Names an image either by resource number or by file name. Both convert
// implicitly, so CBitmap(131) and CBitmap("knob.png") both work. A name is
// kept as a pointer: it must outlive the description.
class CResourceDescription {
public:
    enum { kIntegerType = 0, kStringType = 1, kUnknownType = 2 };

    CResourceDescription() : type(kUnknownType) { u.name = nullptr; }
    CResourceDescription(int id) : type(kIntegerType) { u.id = id; }
    CResourceDescription(long id) : type(kIntegerType) { u.id = id; }
    CResourceDescription(const char* name) : type(kStringType) { u.name = name; }

    long type;
    union {
        long id;
        const char* name;
    } u;
};

// The image files a binary carries, by file name ("bmp00131.png"). Filled
// before main() by the tables that zel_embed_images generates.
class ResourceRegistry {
public:
    struct Entry {
        const unsigned char* data;
        std::size_t size;
    };

    // The first registration of a name wins; data must stay valid for the
    // life of the program (it is static data in the generated table).
    static void add(const char* name, const unsigned char* data, std::size_t size);
    // Null data when there is no such resource.
    static Entry find(const char* name);
    // The file name that a resource number stands for: "bmp%05d.png".
    static void fileNameForId(long id, char* out, std::size_t outSize);
};

} // namespace VSTGUI
