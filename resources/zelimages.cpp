// Draws the editor's images into a directory:
//     zelimages <output directory>
// writes the background, the switch filmstrip, the pad and the handle under
// the file names of their resource numbers (bmp%05d.png), and
// editor-preview.png (all of them put together, for looking at). Exits with 1
// if anything cannot be written.

#include "Artwork.h"
#include "EditorLayout.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <cstdio>
#include <string>

namespace {

std::string imageFile(int resource) {
    char name[32];
    std::snprintf(name, sizeof name, "bmp%05d.png", resource);
    return name;
}

bool save(const Canvas& canvas, const std::string& directory, const std::string& name) {
    const std::string path = directory + "/" + name;
    if (canvas.writePng(path)) return true;
    std::fprintf(stderr, "zelimages: cannot write %s\n", path.c_str());
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: zelimages <output directory>\n");
        return 2;
    }
    const std::string directory = argv[1];
    using namespace geometry;

    bool ok = true;
    {
        Canvas background(kWindowWidth, kWindowHeight);
        Canvas filmstrip(kSwitchFrameWidth, kSwitchFrames * kSwitchFrameHeight);
        Canvas pad(kPad.width(), kPad.height());
        Canvas handle(kHandleSize, kHandleSize);
        Canvas preview(kWindowWidth, kWindowHeight);

        artwork::drawBackground(background);
        artwork::drawSwitchFilmstrip(filmstrip);
        artwork::drawPad(pad);
        artwork::drawHandle(handle);
        artwork::drawPreview(preview, background, filmstrip, pad, handle);

        ok = save(background, directory, imageFile(kBackgroundImage)) && ok;
        ok = save(filmstrip, directory, imageFile(kSwitchImage)) && ok;
        ok = save(pad, directory, imageFile(kPadImage)) && ok;
        ok = save(handle, directory, imageFile(kHandleImage)) && ok;
        ok = save(preview, directory, "editor-preview.png") && ok;
    }
    // Drop cairo's and fontconfig's caches so that leak checkers see a clean exit.
    cairo_debug_reset_static_data();
    FcFini();
    return ok ? 0 : 1;
}
