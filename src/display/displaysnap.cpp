// Pictures out of the module.

#include "display/display.h"

namespace zet::ZETShow {

int Display::snapTask(const DisplayConfigUserData&) {
    return -1;  // there is no read-out yet: the record comes back as it was
}

}  // namespace zet::ZETShow
