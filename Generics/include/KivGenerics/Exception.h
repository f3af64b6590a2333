#pragma once

#include <KivBase/Message.h>

namespace KivGenerics {

/// Thrown for every misuse of the library, as KivBase::ExceptionImpl<Exception>: catch it as Exception, KivBase::Message
/// or std::exception. The domain is KivBase::MESSAGE_DOMAIN_UNKNOWN, the id -1, the text fixed for each misuse.
class Exception : public KivBase::Message {
public:
    /// 0 for Exception itself, 1 for ReadOnlyException.
    virtual int GetExceptionKind() const { return 0; }
};

/// Thrown for an attempt to change a read-only tree, as KivBase::ExceptionImpl<ReadOnlyException>.
class ReadOnlyException : public Exception {
public:
    int GetExceptionKind() const override { return 1; }
};

}  // namespace KivGenerics
