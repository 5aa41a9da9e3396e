#pragma once

#include "VstPlugin.h"

#include <ostream>

// Prints each edit the plug-in reports to its host, one line each, with the
// parameter's name and the plug-in's own text for the new value:
//
//   begin edit   2 X
//   automate     3 Y          0.312500  1.50 m
//   automate     2 X          0.687500  -1.50 m
//   end edit     2 X
class EditReporter {
public:
    EditReporter(VstPlugin& plugin, std::ostream& out) : plugin(plugin), out(out) {}
    void report(VstInt32 opcode, VstInt32 index, float value);

private:
    VstPlugin& plugin;
    std::ostream& out;
};
