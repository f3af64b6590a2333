#pragma once

namespace KivBase {

/// Base of classes whose objects have an identity: they can be neither copied nor moved.
class NoCopy {
public:
    NoCopy(const NoCopy&) = delete;
    NoCopy(NoCopy&&) = delete;
    NoCopy& operator=(const NoCopy&) = delete;
    NoCopy& operator=(NoCopy&&) = delete;

protected:
    NoCopy() = default;
    ~NoCopy() = default;
};

}  // namespace KivBase
