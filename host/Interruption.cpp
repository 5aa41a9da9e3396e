#include "Interruption.h"

#include <csignal>

namespace {
volatile std::sig_atomic_t flag = 0;
extern "C" void onSignal(int signal) {
    flag = signal;
}
} // namespace

void Interruption::install() {
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    std::signal(SIGHUP, onSignal);
}

bool Interruption::requested() {
    return flag != 0;
}

int Interruption::signalNumber() {
    return flag;
}
