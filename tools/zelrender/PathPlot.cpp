#include "PathPlot.h"

#include "AudioFiles.h"
#include "Palette.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kOuterLimit = 4.0; // metres: the outer sphere, and "off"

// One point of the path in both forms: degrees and metres; x front, y left.
struct Place {
    double seconds, azimuth, elevation, distance, x, y;
};

Place placeOf(const TimedPosition& point) {
    Place p{point.seconds, 0, 0, 0, 0, 0};
    if (const auto* polar = std::get_if<PolarPosition>(&point.position)) {
        p.azimuth = std::fmod(std::fmod(polar->azimuth, 360.0) + 360.0, 360.0);
        p.elevation = polar->elevation;
        p.distance = polar->distance.value_or(kOuterLimit);
    } else {
        const auto& c = std::get<CartesianPosition>(point.position);
        p.distance = std::sqrt(c.x * c.x + c.y * c.y + c.z * c.z);
        p.azimuth = c.x == 0 && c.y == 0 ? 0.0 : std::atan2(c.y, c.x) * 180.0 / kPi;
        if (p.azimuth < 0) p.azimuth += 360.0;
        p.elevation = p.distance > 0 ? std::asin(c.z / p.distance) * 180.0 / kPi : 0.0;
    }
    const double horizontal = p.distance * std::cos(p.elevation * kPi / 180.0);
    p.x = horizontal * std::cos(p.azimuth * kPi / 180.0);
    p.y = horizontal * std::sin(p.azimuth * kPi / 180.0);
    return p;
}

void setColour(cairo_t* cr, const Colour& c) {
    cairo_set_source_rgba(cr, c.r, c.g, c.b, c.a);
}

void label(cairo_t* cr, double x, double y, const std::string& text, const Colour& colour,
           double size = 12.0) {
    cairo_new_path(cr); // text leaves a current point that a later arc would join
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, size);
    setColour(cr, colour);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, text.c_str());
}

std::string format(const char* pattern, double value) {
    char text[32];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

// The horizontal plane seen from above, the listener in the middle.
void drawTopView(cairo_t* cr, const std::vector<Place>& places, std::optional<double> nfc) {
    const double cx = PathPlot::kWidth / 2.0, cy = 330.0, scale = 70.0; // px per metre
    setColour(cr, palette::kRecess);
    cairo_rectangle(cr, 20, 40, PathPlot::kWidth - 40, 580);
    cairo_fill(cr);
    cairo_set_line_width(cr, 1.0);
    for (int ring = 1; ring <= 4; ++ring) {
        setColour(cr, ring == 4 ? palette::kEdge : palette::kFaint);
        cairo_new_sub_path(cr);
        cairo_arc(cr, cx, cy, ring * scale, 0, 2 * kPi);
        cairo_stroke(cr);
        label(cr, cx + 4, cy - ring * scale + 14, std::to_string(ring) + " m", palette::kCaption,
              11);
    }
    if (nfc) {
        cairo_save(cr);
        const double dash[] = {6.0, 4.0};
        cairo_set_dash(cr, dash, 2, 0);
        setColour(cr, palette::kMetalDark);
        cairo_new_sub_path(cr);
        cairo_arc(cr, cx, cy, *nfc * scale, 0, 2 * kPi);
        cairo_stroke(cr);
        cairo_restore(cr);
        label(cr, cx - *nfc * scale * 0.71 - 40, cy + *nfc * scale * 0.71 + 14,
              "compensation " + format("%.2f m", *nfc), palette::kMetalDark, 11);
    }
    label(cr, cx - 16, 58, "front", palette::kCaption);
    label(cr, 28, cy + 4, "left", palette::kCaption);
    label(cr, PathPlot::kWidth - 56, cy + 4, "right", palette::kCaption);
    label(cr, cx - 14, 612, "back", palette::kCaption);
    // The listener, facing front.
    setColour(cr, palette::kTitle);
    cairo_move_to(cr, cx, cy - 9);
    cairo_line_to(cr, cx - 6, cy + 6);
    cairo_line_to(cr, cx + 6, cy + 6);
    cairo_close_path(cr);
    cairo_fill(cr);

    // Front (x) is up and left (y) is to the left.
    auto at = [&](const Place& p) { return std::make_pair(cx - p.y * scale, cy - p.x * scale); };
    setColour(cr, palette::kDisplay);
    cairo_set_line_width(cr, 2.0);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto [px, py] = at(places[i]);
        if (i == 0)
            cairo_move_to(cr, px, py);
        else
            cairo_line_to(cr, px, py);
    }
    cairo_stroke(cr);
    for (std::size_t i = 0; i < places.size(); i += places.size() == 1 ? 1 : places.size() - 1) {
        const auto [px, py] = at(places[i]);
        setColour(cr, i == 0 ? palette::kDisplay : palette::kTitle);
        cairo_new_sub_path(cr);
        cairo_arc(cr, px, py, 6, 0, 2 * kPi);
        cairo_fill(cr);
    }
}

// One quantity over time in a strip: the value holds from each point until
// the next; a wrap of the azimuth through 0 is not drawn as a jump.
void drawStrip(cairo_t* cr, double top, const char* name, double low, double high,
               const std::vector<Place>& places, double seconds,
               const std::function<double(const Place&)>& value, bool wraps) {
    const double left = 70, width = PathPlot::kWidth - 90, height = 90;
    setColour(cr, palette::kRecess);
    cairo_rectangle(cr, left, top, width, height);
    cairo_fill(cr);
    label(cr, 20, top - 6, name, palette::kTitle);
    label(cr, 24, top + 12, format("%g", high), palette::kCaption, 10);
    label(cr, 24, top + height, format("%g", low), palette::kCaption, 10);
    const double span = std::max(seconds, 1e-9);
    auto px = [&](double t) { return left + width * std::clamp(t / span, 0.0, 1.0); };
    auto py = [&](double v) { return top + height * (1.0 - (v - low) / (high - low)); };

    setColour(cr, palette::kDisplay);
    cairo_set_line_width(cr, 1.6);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const double v = value(places[i]);
        const double t = i == 0 ? 0.0 : places[i].seconds;
        const bool jump = i > 0 && wraps && std::fabs(v - value(places[i - 1])) > 180.0;
        if (i == 0 || jump)
            cairo_move_to(cr, px(t), py(v));
        else
            cairo_line_to(cr, px(t), py(v));
    }
    if (places.size() == 1) {
        cairo_new_sub_path(cr);
        cairo_arc(cr, px(0), py(value(places[0])), 4, 0, 2 * kPi);
        cairo_fill(cr);
    }
    cairo_line_to(cr, px(seconds), py(value(places.back())));
    cairo_stroke(cr);
}

void drawTimeAxis(cairo_t* cr, double top, double seconds) {
    const double left = 70, width = PathPlot::kWidth - 90;
    const double steps[] = {0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 30, 60, 120, 300, 600, 1800, 3600};
    double step = steps[0];
    for (double s : steps)
        if (seconds / s >= 4) step = s;
    for (double t = 0; t <= seconds + 1e-9; t += step) {
        const double x = left + width * (seconds > 0 ? t / seconds : 0);
        label(cr, x - 8, top, format("%g", t), palette::kCaption, 10);
    }
    label(cr, left + width - 60, top + 18, "time (s)", palette::kCaption, 11);
}

cairo_status_t collect(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

} // namespace

PathPlot::PathPlot(const AutomationPath& path_, std::optional<double> compensation_,
                   double seconds_)
    : path(path_), compensation(compensation_), seconds(seconds_) {}

void PathPlot::write(const std::string& fileName) const {
    std::vector<Place> places;
    for (const TimedPosition& point : path.points()) places.push_back(placeOf(point));
    if (places.empty()) places.push_back(placeOf({0.0, PolarPosition{}}));

    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
    cairo_t* cr = cairo_create(surface);
    setColour(cr, palette::kBody);
    cairo_paint(cr);
    label(cr, 20, 28, "Source path, seen from above", palette::kTitle, 15);
    drawTopView(cr, places, compensation);
    drawStrip(
        cr, 660, "azimuth (degrees)", 0, 360, places, seconds,
        [](const Place& p) { return p.azimuth; }, true);
    drawStrip(
        cr, 780, "elevation (degrees)", -90, 90, places, seconds,
        [](const Place& p) { return p.elevation; }, false);
    drawStrip(
        cr, 900, "distance (m)", 0, 4, places, seconds, [](const Place& p) { return p.distance; },
        false);
    drawTimeAxis(cr, 1006, seconds);
    cairo_destroy(cr);
    std::string png;
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface, collect, &png);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS)
        throw AudioFileError("cannot draw '" + fileName + "': " + cairo_status_to_string(status));
    writeFileAtomically(fileName, png);
}
