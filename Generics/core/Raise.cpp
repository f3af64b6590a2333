#include "core/Raise.h"

#include <KivGenerics/ChangeGuard.h>
#include <KivGenerics/Exception.h>

#include "core/Texts.h"

namespace KivGenerics {
namespace {

template <class T>
[[noreturn]] void Throw(const char16_t* text) {
    T message;
    message.SetDomainAndID(KivBase::MESSAGE_DOMAIN_UNKNOWN, -1);
    message.SetMessage(text);
    throw KivBase::ExceptionImpl<T>(message);
}

}  // namespace

void Raise(const char16_t* text) {
    Throw<Exception>(text);
}

void ChangeGuard::RefuseChange() {
    Throw<ReadOnlyException>(Texts::ReadOnly);
}

}  // namespace KivGenerics
