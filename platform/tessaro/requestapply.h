/// The client's side of an apply.
#pragma once

#include "status.h"

#include <QtCore/QString>

/// Starts the apply service as a process of its own; where that fails, prints why.
Status startApplyService(const QString &section, const QString &trigger);
