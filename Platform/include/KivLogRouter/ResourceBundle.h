#pragma once

#include <KivBase/Export.h>
#include <KivResource/ResourceBundle.h>

namespace KivLogRouter {

/// The bundle that message texts come from: the one that was set, else the platform's own TextBundle. Never null.
KIV_PLATFORM_EXPORT KivResource::ResourceBundle* GetResourceBundle() noexcept;

/// Sets the bundle; null brings the platform's own back. Returns the one that was set before, null for the platform's own.
/// The bundle must outlive its setting.
KIV_PLATFORM_EXPORT KivResource::ResourceBundle* SetResourceBundle(KivResource::ResourceBundle* bundle) noexcept;

/// The platform's own bundle, which a host can fill with texts. Empty at first.
KIV_PLATFORM_EXPORT KivResource::TextBundle& GetDefaultResourceBundle() noexcept;

}  // namespace KivLogRouter
