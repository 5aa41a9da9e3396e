#include "AutomationPath.h"

#include <fstream>
#include <sstream>

namespace {

std::vector<std::string> words(const std::string& line) {
    std::istringstream in(line.substr(0, line.find('#')));
    std::vector<std::string> result;
    for (std::string word; in >> word;) result.push_back(word);
    return result;
}

SourcePosition polarPoint(const std::vector<std::string>& w) {
    PolarPosition p;
    p.azimuth = parseNumber(w[1], "azimuth");
    p.elevation = parseNumber(w[2], "elevation");
    p.distance = parseMetresOrOff(w[3], "distance");
    requireValid(p);
    return p;
}

SourcePosition cartesianPoint(const std::vector<std::string>& w) {
    CartesianPosition p;
    p.x = parseNumber(w[1], "x");
    p.y = parseNumber(w[2], "y");
    p.z = parseNumber(w[3], "z");
    requireValid(p);
    return p;
}

} // namespace

AutomationPath AutomationPath::load(const std::string& fileName) {
    std::ifstream in(fileName);
    // An unreadable file is a file failure, not a bad value in it.
    if (!in) throw std::runtime_error("cannot read path file '" + fileName + "'");
    return parse(in, fileName);
}

AutomationPath AutomationPath::parse(std::istream& in, const std::string& sourceName) {
    AutomationPath path;
    enum class Form { unknown, polar, cartesian } form = Form::unknown;
    int lineNumber = 0;
    for (std::string line; std::getline(in, line);) {
        ++lineNumber;
        const std::vector<std::string> w = words(line);
        if (w.empty()) continue;
        try {
            if (form == Form::unknown) {
                if (w.size() == 1 && w[0] == "polar") {
                    form = Form::polar;
                } else if (w.size() == 1 && w[0] == "cartesian") {
                    form = Form::cartesian;
                } else {
                    throw ValueError("the first line must be 'polar' or 'cartesian'");
                }
                continue;
            }
            if (w.size() != 4) {
                throw ValueError(form == Form::polar
                                     ? "expected 4 values: t azimuth elevation distance"
                                     : "expected 4 values: t x y z");
            }
            const double seconds = parseNumber(w[0], "time");
            if (seconds < 0.0) throw ValueError("time " + w[0] + " is negative");
            if (!path.trajectory.empty() && seconds < path.trajectory.back().seconds) {
                throw ValueError("time " + w[0] + " is earlier than the line before");
            }
            path.trajectory.push_back(
                {seconds, form == Form::polar ? polarPoint(w) : cartesianPoint(w)});
        } catch (const ValueError& error) {
            throw ValueError(sourceName + ":" + std::to_string(lineNumber) + ": " + error.what());
        }
    }
    if (in.bad()) throw std::runtime_error("cannot read path file '" + sourceName + "'");
    if (path.trajectory.empty()) throw ValueError(sourceName + ": the path has no positions");
    return path;
}
