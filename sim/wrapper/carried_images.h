#ifndef KELVO_SIM_WRAPPER_CARRIED_IMAGES_H
#define KELVO_SIM_WRAPPER_CARRIED_IMAGES_H

#include "sim/lens/carried_image.h"

namespace kelvo::sim {

/// The nine program images that the library was built with.
camera::CarriedImages carried_images();

}  // namespace kelvo::sim

#endif
