#pragma once

#include <cstdint>
#include <string>

#include "zet/export.h"

namespace zet {

/// A plain value of the players' common interface; the display module only copies it.
class ZET_API CLogCollection {
public:
    CLogCollection();
    CLogCollection(const CLogCollection& other);
    CLogCollection& operator=(const CLogCollection& other);
    ~CLogCollection();

    std::uint32_t words[31] = {};
    std::string text;
    std::uint32_t tail[2] = {};
};

}  // namespace zet
