// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <zo/check.h>

#include <QObject>

#include <memory>

/// Tries a robot step by step on a thread of its own, and tells the GUI thread what was found. Its
/// end calls that off, and does not wait for it.
class RobotCheck : public QObject
{
    Q_OBJECT

public:
    explicit RobotCheck(QObject* parent = nullptr);
    ~RobotCheck() override;

    /// To be called once.
    void start(const ConnectionSettings& settings);

signals:
    void stepDone(const ZoCheck::Step& step);
    /// The end; `problem` is empty, or says what kept it from beginning.
    void finished(bool isGood, const QString& problem);

private:
    struct Talk;

    const std::shared_ptr<Talk> fTalk;
};
