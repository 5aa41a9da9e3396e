#include "CommandLine.h"

#include <cerrno>
#include <cstdlib>

namespace {

int parseInteger(const std::string& text, const std::string& what, int min, int max) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno == ERANGE) {
        throw UsageError(what + " '" + text + "' is not a whole number");
    }
    if (value < min || value > max) {
        throw ValueError(what + " " + text + " is outside " + std::to_string(min) + " .. " +
                         std::to_string(max));
    }
    return static_cast<int>(value);
}

// Collects the position options before deciding between polar and Cartesian.
struct PositionParts {
    std::optional<double> azimuth, elevation, x, y, z;
    std::optional<std::optional<double>> distance;

    bool polar() const { return azimuth || elevation || distance; }
    bool cartesian() const { return x || y || z; }

    SourcePosition build() const {
        if (cartesian())
            return CartesianPosition{x.value_or(0.0), y.value_or(0.0), z.value_or(0.0)};
        PolarPosition p;
        p.azimuth = azimuth.value_or(0.0);
        p.elevation = elevation.value_or(0.0);
        p.distance = distance.value_or(std::nullopt);
        return p;
    }
};

} // namespace

Options CommandLine::parse(const std::vector<std::string>& arguments) {
    Options options;
    PositionParts parts;
    std::vector<std::string> positional;

    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        std::optional<std::string> inlineValue;
        if (name.rfind("--", 0) == 0 && name.find('=') != std::string::npos) {
            inlineValue = name.substr(name.find('=') + 1);
            name = name.substr(0, name.find('='));
        }
        auto value = [&]() -> std::string {
            if (inlineValue) return *inlineValue;
            if (i + 1 >= arguments.size()) throw UsageError(name + " needs a value");
            return arguments[++i];
        };
        auto flag = [&]() {
            if (inlineValue) throw UsageError(name + " takes no value");
            return true;
        };

        if (name == "-h" || name == "--help") {
            options.help = flag();
        } else if (name == "--info") {
            options.info = flag();
        } else if (name == "-q" || name == "--quiet") {
            options.quiet = flag();
        } else if (name == "--plugin") {
            options.pluginPath = value();
        } else if (name == "-o" || name == "--output") {
            options.outputPath = value();
        } else if (name == "--path") {
            options.pathFile = value();
        } else if (name == "--binaural") {
            options.binauralPath = value();
        } else if (name == "--hrtf") {
            options.hrtfPath = value();
        } else if (name == "--plot") {
            options.plotPath = value();
        } else if (name == "--azimuth") {
            parts.azimuth = parseNumber(value(), "azimuth");
        } else if (name == "--elevation") {
            parts.elevation = parseNumber(value(), "elevation");
        } else if (name == "--distance") {
            parts.distance = parseMetresOrOff(value(), "distance");
        } else if (name == "--x") {
            parts.x = parseNumber(value(), "x");
        } else if (name == "--y") {
            parts.y = parseNumber(value(), "y");
        } else if (name == "--z") {
            parts.z = parseNumber(value(), "z");
        } else if (name == "--nfc") {
            options.compensation = parseMetresOrOff(value(), "compensation distance");
            options.compensationGiven = true;
        } else if (name == "--program") {
            options.program = parseInteger(value(), "program", 1, kProgramCount);
        } else if (name == "--block") {
            options.blockSize = parseInteger(value(), "block size", 1, kMaxBlockSize);
        } else if (name.size() > 1 && name[0] == '-') {
            throw UsageError("unknown option '" + name + "'");
        } else {
            positional.push_back(name);
        }
    }
    if (options.help) return options;

    if (positional.size() > 1) throw UsageError("more than one input file given");
    if (!positional.empty()) options.inputPath = positional[0];
    if (parts.polar() && parts.cartesian()) {
        throw UsageError("give the position either as --azimuth/--elevation/--distance or as "
                         "--x/--y/--z, not both");
    }
    options.positionGiven = parts.polar() || parts.cartesian();
    if (options.positionGiven && !options.pathFile.empty()) {
        throw UsageError("--path gives the position; it cannot be combined with a fixed one");
    }
    if (options.inputPath.empty() && !options.info &&
        (options.positionGiven || !options.pathFile.empty())) {
        throw UsageError("the built-in demo has its own trajectory; give an input file to "
                         "place a source yourself");
    }
    if (options.info && !(options.outputPath + options.binauralPath + options.plotPath).empty()) {
        throw UsageError("--info writes no file; leave out --output, --binaural and --plot");
    }
    if (!options.hrtfPath.empty() && options.binauralPath.empty()) {
        throw UsageError("--hrtf chooses the set for --binaural; give --binaural FILE too");
    }
    if (!options.info && options.outputPath.empty()) {
        throw UsageError("no output file: give one with -o FILE");
    }
    if (!options.inputPath.empty() && options.inputPath == options.outputPath) {
        throw UsageError("the output would overwrite the input");
    }

    options.position = parts.build();
    requireValid(options.position);
    if (options.compensation) {
        requireRange(*options.compensation, PhysicalLimits::kCompensationMin,
                     PhysicalLimits::kCompensationMax, "compensation distance", "m");
    }
    return options;
}

const char* CommandLine::usage() {
    return R"(Usage: zelrender [options] [INPUT] -o OUTPUT
       zelrender [options] --info

Places a mono sound file as a point source around the listener with the
Zelworks Orvalis XY 3 - 3d encoder plug-in, loaded and driven as a VST 2.4
host does, and writes the third-order ambisonic result.

INPUT   a mono audio file in any format libsndfile reads (WAV, FLAC, Ogg,
        AIFF, ...), rendered at its own sample rate. Without INPUT the
        built-in demo is rendered: 8 s of noise bursts at 48 kHz circling the
        listener, then flying through the listener, with near-field
        compensation at 2 m (change it with --nfc).
OUTPUT  16 channels, 32-bit float WAV (RF64 beyond 4 GiB), in AmbiX form:
        ACN channel order (W Y Z X V T R S U Q O M K L N P), SN3D
        normalisation. Written under a temporary name and renamed when
        complete, so a failed run leaves no partial file.

Source position (polar or Cartesian, not both; default: straight ahead, far):
  --azimuth DEG      -360 .. 360, counter-clockwise from the front (90 = left)
  --elevation DEG    -90 .. 90
  --distance M|off   0 .. 4 m; off (= 4 m) puts the source far away
  --x M --y M --z M  -4 .. 4 m each (x front, y left, z up), within 4 m of
                     the centre; unnamed coordinates are 0
  --nfc M|off        near-field compensation distance, 0.5 .. 4 m; off
                     (= 4 m, the default) renders distance by panning
                     towards the centre instead
  --path FILE        a moving source: time-stamped positions, see below

Listening and looking:
  --binaural FILE    also write a 2-channel headphone version (the ambisonic
                     result decoded at third order through an HRTF set)
  --hrtf FILE.sofa   the HRTF set for --binaural (default: Debian's
                     /usr/share/libmysofa/default.sofa)
  --plot FILE.png    draw the source's path: a top view and azimuth,
                     elevation and distance over time

Other options:
  --program N        select the plug-in's program N (1 .. 16) first
  --plugin PATH      the plug-in .so to load (default: ZelAmbiEnc.so beside
                     zelrender, in its build tree, or in ~/.vst)
  --block N          block size in frames, 1 .. 8192 (default 512)
  --info             show what a host sees of the plug-in (names, ID, pins,
                     parameters with their display texts after the position
                     options, programs) and exit
  -q, --quiet        no progress bar
  -h, --help         this text

Path file: '#' starts a comment, blank lines are skipped. The first word is
'polar' or 'cartesian'; then one position per line:
  polar:      t  azimuth[deg]  elevation[deg]  distance[m|off]
  cartesian:  t  x[m]  y[m]  z[m]
t is in seconds and never decreases. Each position holds from its time on
(the plug-in glides to it within about 10 ms); the first also holds before
its time. Blocks are split at each time stamp, so every change lands on its
exact sample. Example:
  polar
  0.0    0  0  2
  1.0   90  0  1.5
  2.0  180 30  off

Exit status: 0 on success, 1 when a file or the plug-in fails, 2 for a bad
command line or a value out of range.
)";
}
