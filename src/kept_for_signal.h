// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class QWidget;

/// Keeps `widget` until the end of a scope, although its `owner` is deleted meanwhile, because the
/// signal that brought us there still has to return into it.
class KeptForSignal
{
public:
    KeptForSignal(QWidget* widget, QWidget* owner);
    ~KeptForSignal();
    KeptForSignal(const KeptForSignal&) = delete;
    KeptForSignal& operator=(const KeptForSignal&) = delete;

private:
    QWidget* fWidget;
    QMetaObject::Connection fConnection;
    bool fIsOrphan = false;
};
