#pragma once

#include "cview.h"

namespace VSTGUI {
class CControl;
}

// Receives the changes of the controls it listens to. Declared outside the
// toolkit's namespace, where plug-in code expects it.
class CControlListener {
public:
    virtual ~CControlListener() = default;
    virtual void valueChanged(VSTGUI::CControl* control) = 0;
    // Non-zero: the listener handled a modified click and the control must
    // not see it.
    virtual long controlModifierClicked(VSTGUI::CControl* /*control*/, long /*button*/) {
        return 0;
    }
    virtual void controlBeginEdit(VSTGUI::CControl* /*control*/) {}
    virtual void controlEndEdit(VSTGUI::CControl* /*control*/) {}
};

namespace VSTGUI {

// Style bits of the stock controls.
enum CControlEnum {
    kHorizontal = 1 << 0,
    kVertical = 1 << 1,
    kShadowText = 1 << 2,
    kLeft = 1 << 3,
    kRight = 1 << 4,
    kTop = 1 << 5,
    kBottom = 1 << 6,
    k3DIn = 1 << 7,
    k3DOut = 1 << 8,
    kPopupStyle = 1 << 9,
    kCheckStyle = 1 << 10,
    kMultipleCheckStyle,
    kNoTextStyle = 1 << 11,
    kNoDrawStyle = 1 << 12,
    kDoubleClickStyle = 1 << 13,
    kNoFrame = 1 << 14
};

constexpr double kPI = 3.14159265358979323846;
constexpr double k2PI = 6.28318530717958647692;
constexpr float kPI_2 = 1.57079632679489661923f;
constexpr float kPI_4 = 0.78539816339744830962f;

// A view with a value between a minimum and a maximum, a tag that names the
// parameter it edits, and a listener that hears about changes.
//
// setValue() only stores: a control counts as dirty while its value differs
// from the last value drawn (oldValue), so the frame redraws it at the next
// idle without the setter touching the window.
class CControl : public CView {
public:
    CControl(const CRect& size, CControlListener* listener = nullptr, long tag = 0,
             CBitmap* background = nullptr);
    CControl(const CControl& other);

    virtual void setValue(float val) { value = val; }
    virtual float getValue() const { return value; }
    virtual void setMin(float val) { vmin = val; }
    virtual float getMin() const { return vmin; }
    virtual void setMax(float val) { vmax = val; }
    virtual float getMax() const { return vmax; }
    virtual void setOldValue(float val) { oldValue = val; }
    virtual float getOldValue() const { return oldValue; }
    virtual void setDefaultValue(float val) { defaultValue = val; }
    virtual float getDefaultValue() const { return defaultValue; }
    virtual void setWheelInc(float val) { wheelInc = val; }
    virtual float getWheelInc() const { return wheelInc; }
    virtual void setTag(long val) { tag = val; }
    virtual long getTag() const { return tag; }
    virtual void setListener(CControlListener* l) { listener = l; }
    CControlListener* getListener() const { return listener; }
    // Clamps the value into [min, max].
    virtual void bounceValue();

    bool isDirty() const override;
    void setDirty(const bool val = true) override;

    // Announce the start and the end of a user gesture: to the listener and,
    // through the frame and the editor, to the host (for the control's tag).
    virtual void beginEdit();
    virtual void endEdit();
    // The reset gesture: exactly left button + control. Sets the default
    // value, tells the listener if that changed anything; true if it fired.
    virtual bool checkDefaultValue(long button);
    virtual void doIdleStuff();

    virtual void setBackOffset(const CPoint& offset) { backOffset = offset; }
    const CPoint& getBackOffset() const { return backOffset; }
    virtual void copyBackOffset() { backOffset = CPoint(size.left, size.top); }

    bool isTypeOf(const char* s) const override {
        return std::strcmp(s, "CControl") == 0 || CView::isTypeOf(s);
    }
    CView* newCopy() const override { return new CControl(*this); }
    const char* getClassName() const override { return "CControl"; }

protected:
    CControlListener* listener;
    long tag;
    float oldValue = 1.0f;
    float defaultValue = 0.5f;
    float value = 0.0f;
    float vmin = 0.0f;
    float vmax = 1.0f;
    float wheelInc = 0.1f;
    CPoint backOffset;
};

} // namespace VSTGUI
