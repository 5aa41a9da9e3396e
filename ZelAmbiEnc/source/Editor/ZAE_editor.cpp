#include "ZAE_editor.h"

#include "EditorLayout.h"
#include "ZelAmbiEncParams.h"
#include "ZelTouchPad.h"
#include "audioeffect.h"

const CColor kDisplayTextColour = {28, 174, 255, 255};

namespace {

using geometry::kBackgroundImage;
using geometry::kHandleImage;
using geometry::kPadImage;
using geometry::kSwitchImage;

// The compensation switch: one filmstrip frame per position.
constexpr long kSwitchPositions = geometry::kSwitchFrames;
constexpr CCoord kSwitchFrameHeight = geometry::kSwitchFrameHeight;

CRect rectOf(const geometry::Rect& r) {
    return CRect(r.left, r.top, r.right, r.bottom);
}

void showParameter(int index, char* text, void* userData) {
    if (userData != nullptr) static_cast<AudioEffect*>(userData)->getParameterDisplay(index, text);
}

void forget(CBitmap* bitmap) {
    if (bitmap != nullptr) bitmap->forget();
}

} // namespace

void azim_display(float, char* text, void* userData) {
    showParameter(kAzim, text, userData);
}
void elev_display(float, char* text, void* userData) {
    showParameter(kElev, text, userData);
}
void x_display(float, char* text, void* userData) {
    showParameter(kX, text, userData);
}
void y_display(float, char* text, void* userData) {
    showParameter(kY, text, userData);
}
void z_display(float, char* text, void* userData) {
    showParameter(kZ, text, userData);
}
void dist_display(float, char* text, void* userData) {
    showParameter(kDist, text, userData);
}
void NFC_display(float, char* text, void* userData) {
    showParameter(kNFC, text, userData);
}

ZAE_editor::ZAE_editor(AudioEffect* effect) : AEffGUIEditor(effect) {
    // The host asks for the window size before it opens the window.
    backgroundBitmap = new CBitmap(kBackgroundImage);
    rect.left = 0;
    rect.top = 0;
    rect.right = static_cast<VstInt16>(backgroundBitmap->getWidth());
    rect.bottom = static_cast<VstInt16>(backgroundBitmap->getHeight());
}

ZAE_editor::~ZAE_editor() {
    forget(backgroundBitmap);
}

float ZAE_editor::P(int index) const {
    return effect->getParameter(index);
}

bool ZAE_editor::open(void* parent) {
    // A host that opens again without closing gets the old window replaced.
    if (frame != nullptr) close();
    AEffGUIEditor::open(parent);
    guiThread.store(std::this_thread::get_id());
    pendingChanges.store(0); // everything below is read fresh

    padBitmap = new CBitmap(kPadImage);
    handleBitmap = new CBitmap(kHandleImage);
    switchBitmap = new CBitmap(kSwitchImage);

    const CRect window(0, 0, backgroundBitmap->getWidth(), backgroundBitmap->getHeight());
    frame = new CFrame(window, parent, this);
    frame->setBackground(backgroundBitmap);

    // The pad's horizontal value is the complement of y, its vertical value
    // the complement of x: x grows towards the top, y towards the left.
    touchPad =
        new ZelTouchPad(rectOf(geometry::kPad), this, kX, padBitmap, handleBitmap, CPoint(0, 0));
    touchPad->setXYValue(static_cast<float>(1.0 - P(kY)), static_cast<float>(1.0 - P(kX)));
    frame->addView(touchPad);

    xDisplay = addDisplay(rectOf(geometry::kXDisplay), kX, x_display);
    yDisplay = addDisplay(rectOf(geometry::kYDisplay), kY, y_display);

    // Frame 0 and the top of the switch stand for the parameter's 1.0
    // (compensation off), the last frame and the bottom for 0.0.
    nfcSwitch =
        new CVerticalSwitch(rectOf(geometry::kSwitch), this, kNFC, kSwitchPositions,
                            kSwitchFrameHeight, kSwitchPositions, switchBitmap, CPoint(0, 0));
    nfcSwitch->setValue(1.0f - P(kNFC));
    nfcSwitch->setTransparency(false);
    frame->addView(nfcSwitch);

    nfcDisplay = addDisplay(rectOf(geometry::kSwitchDisplay), kNFC, NFC_display);

    setKnobMode(0);

    // From here on only the frame and the controls hold these images.
    forget(extraBitmap1);
    forget(extraBitmap2);
    forget(extraBitmap3);
    forget(switchBitmap);
    forget(padBitmap);
    forget(handleBitmap);
    // Without a window (no parent, or one that is gone) the host is told so;
    // the controls stay built off-screen until the next open or close.
    return frame->hasWindow();
}

CParamDisplay* ZAE_editor::addDisplay(const CRect& size, int index,
                                      CParamDisplay::StringConvertWithData convert) {
    CParamDisplay* display = new CParamDisplay(size, nullptr, 0);
    display->setFont(kNormalFontSmaller);
    display->setFontColor(kDisplayTextColour);
    display->setTransparency(true);
    display->setValue(P(index));
    display->setStringConvert(convert, effect);
    frame->addView(display);
    return display;
}

void ZAE_editor::close() {
    if (frame != nullptr) {
        delete frame;
        frame = nullptr;
    }
    AEffGUIEditor::close();
}

void ZAE_editor::idle() {
    applyPendingChanges();
    AEffGUIEditor::idle();
}

void ZAE_editor::applyPendingChanges() {
    unsigned changed = pendingChanges.exchange(0);
    for (int index = 0; changed != 0; ++index, changed >>= 1)
        if (changed & 1u) refresh(index);
}

void ZAE_editor::setParameter(VstInt32 index, float /*value*/) {
    if (static_cast<unsigned>(index) > kNFC) return;
    if (std::this_thread::get_id() != guiThread.load()) {
        pendingChanges.fetch_or(1u << index);
        return;
    }
    refresh(index);
}

void ZAE_editor::markPadIfMoved(float oldX, float oldY) {
    // The pad's change detection compares only the mean of its two values, so
    // a move along the other diagonal (azimuth turning at a fixed distance)
    // would leave the handle drawn where it was.
    if (touchPad->getXValue() != oldX || touchPad->getYValue() != oldY) touchPad->setDirty(true);
}

void ZAE_editor::refreshPadAndCoordinates() {
    if (touchPad) {
        const float oldX = touchPad->getXValue();
        const float oldY = touchPad->getYValue();
        touchPad->setXYValue(static_cast<float>(1.0 - P(kY)), static_cast<float>(1.0 - P(kX)));
        markPadIfMoved(oldX, oldY);
    }
    if (xDisplay) xDisplay->setValue(P(kX));
    if (yDisplay) yDisplay->setValue(P(kY));
    if (zDisplay) zDisplay->setValue(P(kZ));
}

void ZAE_editor::refresh(int index) {
    if (frame == nullptr) return;
    switch (index) {
    case kAzim:
        if (azimuthControl) azimuthControl->setValue(P(kAzim));
        if (azimuthDisplay) azimuthDisplay->setValue(P(kAzim));
        refreshPadAndCoordinates();
        break;
    case kElev:
        if (elevationControl) elevationControl->setValue(P(kElev));
        if (elevationDisplay) elevationDisplay->setValue(P(kElev));
        refreshPadAndCoordinates();
        break;
    case kX:
        if (touchPad) {
            const float oldX = touchPad->getXValue();
            const float oldY = touchPad->getYValue();
            touchPad->setYValue(static_cast<float>(1.0 - P(kX)));
            touchPad->setXValue(static_cast<float>(1.0 - P(kY)));
            markPadIfMoved(oldX, oldY);
        }
        if (azimuthControl) azimuthControl->setValue(P(kAzim));
        if (azimuthDisplay) azimuthDisplay->setValue(P(kAzim));
        if (elevationControl) elevationControl->setValue(P(kElev));
        if (elevationDisplay) elevationDisplay->setValue(P(kElev));
        if (distanceControl) distanceControl->setValue(P(kDist));
        if (distanceDisplay) distanceDisplay->setValue(P(kDist));
        // The displays' text does not come from their value: force a redraw.
        if (xDisplay) {
            xDisplay->setValue(P(kX));
            xDisplay->invalid();
        }
        if (yDisplay) {
            yDisplay->setValue(P(kY));
            yDisplay->invalid();
        }
        if (zDisplay) zDisplay->setValue(P(kZ));
        break;
    case kY: // refreshed with the next change of x, which the pad always sends after y
    case kZ: // no z control in this layout
        break;
    case kDist:
        if (distanceControl) distanceControl->setValue(P(kDist));
        if (distanceDisplay) {
            distanceDisplay->setValue(P(kDist));
            distanceDisplay->invalid();
        }
        refreshPadAndCoordinates();
        break;
    case kNFC:
        if (nfcSwitch) nfcSwitch->setValue(1.0f - P(kNFC));
        if (nfcDisplay) {
            nfcDisplay->setValue(P(kNFC));
            nfcDisplay->invalid();
        }
        break;
    default:
        break;
    }
}

void ZAE_editor::valueChanged(CControl* control) {
    const long tag = control->getTag();
    if (static_cast<unsigned long>(tag) > kNFC) return;
    switch (tag) {
    case kAzim:
    case kElev:
    case kDist:
        effect->setParameterAutomated(tag, control->getValue());
        break;
    case kX:
    case kY: {
        // Both pad tags mean the pad; y first, so that the change of x that
        // follows refreshes both coordinates.
        ZelTouchPad* pad = static_cast<ZelTouchPad*>(control);
        effect->setParameterAutomated(kY, 1.0f - pad->getXValue());
        effect->setParameterAutomated(kX, 1.0f - pad->getYValue());
        break;
    }
    case kNFC:
        effect->setParameterAutomated(kNFC, 1.0f - control->getValue());
        break;
    default:
        break;
    }
}
