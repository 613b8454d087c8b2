// Images in memory, as cairo holds them.
#ifndef CORVIS_KIT_APP_SURFACE_H_
#define CORVIS_KIT_APP_SURFACE_H_

#include <cairo.h>

#include <string>

#include "base/result.h"
#include "nurvo_desktop/owned.h"

namespace corvis::kit {

using SurfacePtr = nurvo::Owned<cairo_surface_t, cairo_surface_destroy>;
using ContextPtr = nurvo::Owned<cairo_t, cairo_destroy>;

// Decodes a screenshot of the page.
Result<SurfacePtr> ReadPng(const std::string& png);

// Empty if the image can't be encoded.
std::string WritePng(cairo_surface_t* surface);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_SURFACE_H_
