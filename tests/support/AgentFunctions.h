// Names of agent functions that many tests look for.
#pragma once

inline constexpr char registerProvider[] = "ny_property_register_provider_callback";
inline constexpr char unregisterProvider[] = "ny_property_unregister_provider_callback";
inline constexpr char registerUpdater[] = "ny_updater_register_callbacks";
inline constexpr char unregisterUpdater[] = "ny_updater_unregister_callbacks";
