#pragma once

#include "fakes/RandomMac.h"
#include "profiles/UnifiedProfile.h"
#include "simulator/Json.h"
#include "simulator/Mac.h"

namespace quorvane {

// Random Macs for the round trip, with odd values in everything that is captured, and random profiles for them.

/// How the labels of its launch items begin; no background item has such a one.
inline const QString kLaunchLabel = u"com.launch."_s;

macsim::Json randomRoundTripMac(Draw& draw);

/// What happens to a Mac while its settings are kept: permissions are given and taken, network services and displays come
/// and go, applications are installed and removed.
void changeWorld(const macsim::Mac& mac, Draw& draw);

/// A profile that switches off some of what runs at login on the Mac, and opens applications, some of them the same.
UnifiedProfile randomRoundTripProfile(const macsim::Json& mac, Draw& draw);

} // namespace quorvane
