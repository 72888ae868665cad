#include "actions/ServicePages.h"

namespace quorvane {

using namespace Qt::StringLiterals;

const QList<ServiceSection<MaintenanceSelection>>& maintenanceSections() {
    static const QList<ServiceSection<MaintenanceSelection>> sections{
        {u"File Cleanup"_s,
         {{{u"Clear System Caches"_s, u"Remove user and system cache files to free disk space"_s,
            u"folder.fill.badge.minus"_s},
           &MaintenanceSelection::clearCache},
          {{u"Clean User Trash"_s, u"Permanently delete all items in the Trash"_s, u"trash.fill"_s},
           &MaintenanceSelection::cleanTrash},
          {{u"Purge Downloads Folder"_s, u"Remove all files from the Downloads directory"_s,
            u"folder.fill.badge.minus"_s},
           &MaintenanceSelection::purgeDownloads}}},
    };
    return sections;
}

const QList<ServiceSection<NetworkOperations>>& networkSections() {
    static const QList<ServiceSection<NetworkOperations>> sections{
        {u"Network Diagnostics"_s,
         {{{u"Flush DNS & DHCP Caches"_s, u"Clear DNS resolver cache and DHCP lease information"_s,
            u"arrow.triangle.2.circlepath"_s},
           &NetworkOperations::flushDNS},
          {{u"Reset Network Configuration"_s, u"Reset DNS servers to empty and flush all caches"_s,
            u"arrow.counterclockwise.circle.fill"_s},
           &NetworkOperations::resetConfig}}},
        {u"Network Control"_s,
         {{{u"Disable All Network Interfaces"_s, u"Turn off all network services (Wi-Fi, Ethernet, etc.)"_s,
            u"wifi.slash"_s},
           &NetworkOperations::disableAll},
          {{u"Restore Network Connectivity"_s, u"Re-enable all network services"_s, u"network"_s},
           &NetworkOperations::enableAll}}},
    };
    return sections;
}

} // namespace quorvane
