#pragma once

// Ctrl-C and termination requests, turned into a flag that the render loop
// polls, so that it can stop cleanly and remove its unfinished output.
class Interruption {
public:
    static void install();
    static bool requested();
};
