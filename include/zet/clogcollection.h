#pragma once

#include <cstdint>
#include <string>

#include "zet/export.h"

namespace zet {

/// A plain value of the players' common interface; the display module only copies it.
class ZET_API CLogCollection {
public:
    CLogCollection();
    CLogCollection(const CLogCollection& other);             ///< copies all three
    CLogCollection& operator=(const CLogCollection& other);  ///< copies all three
    ~CLogCollection();

    std::uint32_t words[31] = {};  ///< the value, as far as it stands before the text
    std::string text;              ///< the text
    std::uint32_t tail[2] = {};    ///< the value, as far as it stands behind the text
};

}  // namespace zet
