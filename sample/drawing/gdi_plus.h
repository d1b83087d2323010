#pragma once

// The drawing service of the system, whose header needs others before it.
#include <algorithm>

#include <windows.h>

#include <objidl.h>

namespace Gdiplus { // NOLINT(readability-identifier-naming): the service's own namespace
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace pmx::sample {

/// Starts the drawing service for as long as it lives.
class DrawingService {
public:
    DrawingService() {
        const Gdiplus::GdiplusStartupInput input;
        Gdiplus::GdiplusStartup(&Token, &input, nullptr);
    }
    DrawingService(const DrawingService&) = delete;
    DrawingService& operator=(const DrawingService&) = delete;
    ~DrawingService() { Gdiplus::GdiplusShutdown(Token); }

private:
    ULONG_PTR Token = 0;
};

} // namespace pmx::sample
