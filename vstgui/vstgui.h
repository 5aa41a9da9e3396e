#pragma once

// The toolkit's views, frame, bitmaps, fonts and drawing context.

#include "cbaseobject.h"
#include "cbitmap.h"
#include "cdrawcontext.h"
#include "cfont.h"
#include "cframe.h"
#include "cgeometry.h"
#include "cresources.h"
#include "cview.h"
#include "cviewcontainer.h"

using namespace VSTGUI;
