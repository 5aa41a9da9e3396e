#pragma once

#include "aeffguieditor.h"
#include "cbitmap.h"
#include "cparamdisplay.h"
#include "cverticalswitch.h"

#include <atomic>
#include <thread>

class ZelTouchPad;

// Text colour of every value display.
extern const CColor kDisplayTextColour;

// Display converters: each ignores the value the display passes and shows the
// host's text for its parameter, so a display never disagrees with the host.
// userData is the effect.
void azim_display(float value, char* text, void* userData);
void elev_display(float value, char* text, void* userData);
void x_display(float value, char* text, void* userData);
void y_display(float value, char* text, void* userData);
void z_display(float value, char* text, void* userData);
void dist_display(float value, char* text, void* userData);
void NFC_display(float value, char* text, void* userData);

// The plug-in's window: an XY pad that moves the source in the horizontal
// plane (x towards the top, y towards the left), a switch for the
// compensation distance and three value displays. The slots for controls this
// layout does not place stay empty, and every update tests them first.
//
// Controls always show what the effect reports (getParameter at the moment of
// use), never the value handed in, because one parameter moves the others.
class ZAE_editor : public AEffGUIEditor, public CControlListener {
public:
    explicit ZAE_editor(AudioEffect* effect);
    ~ZAE_editor() override;

    bool open(void* parent) override;
    void close() override;
    void idle() override;

    // May come from any thread (host automation runs on the audio thread).
    // On the window's own thread the controls are refreshed at once; from any
    // other thread the change is only noted and applied at the next idle, so
    // that no toolkit or window state is touched off the GUI thread.
    void setParameter(VstInt32 index, float value) override;
    void valueChanged(CControl* control) override;

    // Read-only views of the layout, for inspection.
    ZelTouchPad* getTouchPad() const { return touchPad; }
    CVerticalSwitch* getNfcSwitch() const { return nfcSwitch; }
    CParamDisplay* getXDisplay() const { return xDisplay; }
    CParamDisplay* getYDisplay() const { return yDisplay; }
    CParamDisplay* getNfcDisplay() const { return nfcDisplay; }

private:
    float P(int index) const; // the effect's current normalised value
    void refresh(int index);  // the synchronisation row of one parameter
    void refreshPadAndCoordinates();
    void markPadIfMoved(float oldX, float oldY);
    void applyPendingChanges();
    CParamDisplay* addDisplay(const CRect& size, int index,
                              CParamDisplay::StringConvertWithData convert);

    ZelTouchPad* touchPad = nullptr;
    CControl* azimuthControl = nullptr;
    CControl* elevationControl = nullptr;
    CControl* distanceControl = nullptr;
    CVerticalSwitch* nfcSwitch = nullptr;
    CParamDisplay* azimuthDisplay = nullptr;
    CParamDisplay* elevationDisplay = nullptr;
    CParamDisplay* distanceDisplay = nullptr;
    CParamDisplay* nfcDisplay = nullptr;
    CParamDisplay* xDisplay = nullptr;
    CParamDisplay* yDisplay = nullptr;
    CParamDisplay* zDisplay = nullptr;
    CBitmap* backgroundBitmap = nullptr;
    CBitmap* extraBitmap1 = nullptr;
    CBitmap* extraBitmap2 = nullptr;
    CBitmap* extraBitmap3 = nullptr;
    CBitmap* switchBitmap = nullptr;
    CBitmap* padBitmap = nullptr;
    CBitmap* handleBitmap = nullptr;

    // Written by open() while automation on another thread may already be
    // asking whose thread it runs on.
    std::atomic<std::thread::id> guiThread{};
    // One bit per parameter index changed off the GUI thread, not yet shown.
    std::atomic<unsigned> pendingChanges{0};
};
