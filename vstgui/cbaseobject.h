#pragma once

#include <cstring>

namespace VSTGUI {

class CView;

enum CMessageResult { kMessageUnknown = 0, kMessageNotified = 1 };

// Reference-counted base of every toolkit object that is shared between
// owners (views, bitmaps, fonts, drawing contexts). A new object starts with
// one reference held by its creator; forget() deletes it at zero.
class CBaseObject {
public:
    CBaseObject() = default;
    // A copy is a new object with its own single reference.
    CBaseObject(const CBaseObject&) : nbReference(1) {}
    CBaseObject& operator=(const CBaseObject&) { return *this; }
    virtual ~CBaseObject() = default;

    virtual void remember() { nbReference++; }
    virtual void forget() {
        if (nbReference > 0) nbReference--;
        if (nbReference == 0) delete this;
    }
    long getNbReference() const { return nbReference; }

    virtual CMessageResult notify(CBaseObject* /*sender*/, const char* /*message*/) {
        return kMessageUnknown;
    }

private:
    long nbReference = 1;
};

} // namespace VSTGUI

// Run-time class names: isTypeOf walks up through the parents by name, so
// code can ask "is this a CControl?" without RTTI.
#define CLASS_METHODS(name, parent)                                                                \
    bool isTypeOf(const char* s) const override {                                                  \
        return std::strcmp(s, #name) == 0 ? true : parent::isTypeOf(s);                            \
    }                                                                                              \
    VSTGUI::CView* newCopy() const override {                                                      \
        return new name(*this);                                                                    \
    }                                                                                              \
    const char* getClassName() const override {                                                    \
        return #name;                                                                              \
    }
