#include "zet/clogcollection.h"

namespace zet {

CLogCollection::CLogCollection() = default;
CLogCollection::CLogCollection(const CLogCollection& other) = default;
CLogCollection& CLogCollection::operator=(const CLogCollection& other) = default;
CLogCollection::~CLogCollection() = default;

}  // namespace zet
