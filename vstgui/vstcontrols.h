#pragma once

// The toolkit's stock controls.

#include "ccontrol.h"
#include "cknob.h"
#include "cparamdisplay.h"
#include "cverticalswitch.h"
#include "vstgui.h"

using namespace VSTGUI;
