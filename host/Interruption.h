#pragma once

#include <stdexcept>

// Ctrl-C and termination requests, turned into a flag that the render loop
// polls, so that it can stop cleanly and remove its unfinished output.
class Interruption {
public:
    static void install();
    static bool requested();
    // The signal that asked, 0 if none did.
    static int signalNumber();
};

// Thrown where a loop notices the request; a tool exits with 128 + signal.
struct Interrupted : std::runtime_error {
    explicit Interrupted(int signal) : std::runtime_error("interrupted"), signal(signal) {}
    int signal;
};
