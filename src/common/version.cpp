#include "zet/version.h"

namespace zet {

int version() {
    return ZET_VERSION;
}

}  // namespace zet
