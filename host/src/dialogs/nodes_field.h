// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

struct ZoBrokerOptions;
class QComboBox;
class QLineEdit;

/// What a robot's addresses lead to: its server or cluster, a replica there, or sentinels.
class NodesField : public QWidget
{
    Q_OBJECT

public:
    explicit NodesField(QWidget* parent);

    void fill(const ZoBrokerOptions& options);
    /// Puts what is chosen into `options`. Throws ZoError when sentinels lack a name.
    void store(ZoBrokerOptions& options) const;

signals:
    void changed();

private slots:
    void xUpdate();

private:
    bool areSentinels() const;

    QComboBox* fKindBox;
    QLineEdit* fNameEdit; ///< shown for sentinels only
};
