#pragma once

#include "actions/PageTexts.h"
#include "maintenance/MaintenanceSelection.h"
#include "network/NetworkOperations.h"

#include <QList>

// What the pages of maintenance and of the network offer to tick.
namespace quorvane {

template <typename Choices>
struct ServiceBox {
    RowText text;
    bool Choices::*isTicked;
};

template <typename Choices>
struct ServiceSection {
    QString title;
    QList<ServiceBox<Choices>> boxes;
};

const QList<ServiceSection<MaintenanceSelection>>& maintenanceSections();
const QList<ServiceSection<NetworkOperations>>& networkSections();

inline const QString kExecuteMaintenance = QStringLiteral("Execute Maintenance");
inline const QString kExecuteNetwork = QStringLiteral("Execute Network");

} // namespace quorvane
