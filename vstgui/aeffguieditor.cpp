#include "aeffguieditor.h"

#include <chrono>
#include <thread>

namespace VSTGUI {

namespace {
constexpr unsigned long kIdleRate = 100;  // ms between two runs of doIdleStuff
constexpr unsigned long kIdleRate2 = 50;  // the least gap that still runs
constexpr unsigned long kIdleRateMin = 4; // ms given to the system when too early
} // namespace

long AEffGUIEditor::knobMode = kCircularMode;

AEffGUIEditor::AEffGUIEditor(void* effect)
    : AEffEditor(static_cast<AudioEffect*>(effect)), lLastTicks(getTicks()) {
    if (this->effect) this->effect->setEditor(this);
}

AEffGUIEditor::~AEffGUIEditor() {
    delete frame;
    frame = nullptr;
}

bool AEffGUIEditor::getRect(ERect** ppRect) {
    if (!ppRect) return false;
    *ppRect = &rect;
    return true;
}

bool AEffGUIEditor::open(void* ptr) {
    return AEffEditor::open(ptr);
}

void AEffGUIEditor::idle() {
    if (inIdleStuff) return;
    AEffEditor::idle();
    if (frame) frame->idle();
}

bool AEffGUIEditor::setKnobMode(VstInt32 val) {
    knobMode = val;
    return true;
}

void AEffGUIEditor::setParameter(VstInt32, float) {}

void AEffGUIEditor::beginEdit(long index) {
    if (effect) effect->beginEdit(static_cast<VstInt32>(index));
}

void AEffGUIEditor::endEdit(long index) {
    if (effect) effect->endEdit(static_cast<VstInt32>(index));
}

void AEffGUIEditor::doIdleStuff() {
    unsigned long now = getTicks();
    if (now < lLastTicks) {
        wait(kIdleRateMin);
        now += kIdleRateMin;
        if (now < lLastTicks - kIdleRate2) return;
    }
    idle();
    lLastTicks = now + kIdleRate;
    inIdleStuff = true;
    if (effect) effect->masterIdle();
    inIdleStuff = false;
}

unsigned long AEffGUIEditor::getTicks() {
    return CFrame::getTicks();
}

void AEffGUIEditor::wait(unsigned long ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace VSTGUI
