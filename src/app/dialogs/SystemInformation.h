// What a report of a fault should say about the computer.
#pragma once

#include <QList>
#include <QPair>
#include <QString>

namespace orv::app {

using SystemFact = QPair<QString, QString>;

/// Operating system, processor, memory, screens and libraries, as far as the system tells.
QList<SystemFact> systemFacts();

}  // namespace orv::app
