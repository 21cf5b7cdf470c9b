#pragma once

#include <cstdint>
#include <vector>

#include "zet/displayconfig.h"
#include "zet/export.h"

namespace zet {

/// Base of every object that observes the bus: its registrations end with it, as `unRegistObserver` ends them. A call
/// that another thread has begun may still be running, so what the observers use must outlive such a call.
class ZET_API DisplayConfigKit {
public:
    /// Observes `config`, which is not owned and must outlive the object.
    explicit DisplayConfigKit(DisplayConfig* config);
    /// @{
    /// Original and copy share the registrations: whichever is destroyed first ends them.
    DisplayConfigKit(const DisplayConfigKit& other);
    DisplayConfigKit& operator=(const DisplayConfigKit& other);
    /// @}
    virtual ~DisplayConfigKit();

    /// Registers an observer without user data until this object ends. `flag` holds `DisplayConfigFlag` bits. Always
    /// 0, also for an unknown identifier. One thread at a time.
    int regist(std::int64_t id, const DisplayConfig::Callback& callback, unsigned flag);

protected:
    /// Ends all registrations in their order. Always 0.
    int unRegistAll();

    std::vector<void*> _handles;  ///< of the registrations, in their order
    DisplayConfig* _config;       ///< the bus
};

}  // namespace zet
