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

    std::uint32_t words[31] = {};  ///< in front of the text; nothing here reads them
    std::string text;              ///< its text
    std::uint32_t tail[2] = {};    ///< behind the text
};

}  // namespace zet
