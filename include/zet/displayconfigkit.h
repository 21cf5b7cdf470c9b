#pragma once

#include <cstdint>
#include <vector>

#include "zet/displayconfig.h"
#include "zet/export.h"

namespace zet {

/// Base of every object that observes the bus: its registrations end with it, as `unRegistObserver` ends them. A call
/// that another thread has begun may still be finishing, so what the observers use must outlive such a call.
class ZET_API DisplayConfigKit {
public:
    /// Observes `config`, which is not owned and must outlive the object.
    explicit DisplayConfigKit(DisplayConfig* config);
    /// @{
    /// Both name the same registrations from then on: whichever goes first ends them.
    DisplayConfigKit(const DisplayConfigKit& other);
    DisplayConfigKit& operator=(const DisplayConfigKit& other);
    /// @}
    virtual ~DisplayConfigKit();

    /// Registers an observer that ends with this object, with no user data. `flag` holds `DisplayConfigFlag` bits.
    /// Always 0, also for an identifier outside the table. One thread at a time.
    int regist(std::int64_t id, const DisplayConfig::Callback& callback, unsigned flag);

protected:
    /// Ends all registrations in their order. Always 0.
    int unRegistAll();

    std::vector<void*> _handles;  ///< of the registrations, in their order
    DisplayConfig* _config;       ///< the bus
};

}  // namespace zet
