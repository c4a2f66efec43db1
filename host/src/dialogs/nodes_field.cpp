// SPDX-License-Identifier: MIT
#include "dialogs/nodes_field.h"

#include <zo/broker_options.h>
#include <zo/error.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>

namespace {

/// In the order in which they are offered.
enum Kind
{
    Server,
    Replica,
    Sentinels
};

} // namespace

NodesField::NodesField(QWidget* parent)
    : QWidget(parent), fKindBox(new QComboBox(this)), fNameEdit(new QLineEdit(this))
{
    fKindBox->setObjectName("nodes");
    fKindBox->addItems(
        {tr("the robot's server or cluster"), tr("a replica in its cluster"), tr("sentinels of")});
    fKindBox->setAccessibleName(tr("What the address leads to"));
    fKindBox->setToolTip(tr("A replica takes work off the node that is written to; its values may "
                            "be late. Sentinels know which of several servers is the robot's."));
    fNameEdit->setObjectName("sentinel");
    fNameEdit->setAccessibleName(tr("Name of the server"));
    fNameEdit->setPlaceholderText(tr("the server's name"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fKindBox, 1);
    layout->addWidget(fNameEdit, 1);
    setFocusProxy(fKindBox);
    setFocusPolicy(Qt::ClickFocus); // the key of a label does not lead to what has none
    connect(fKindBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &NodesField::xUpdate);
    connect(fNameEdit, &QLineEdit::textChanged, this, &NodesField::changed);
    xUpdate();
}

void NodesField::fill(const ZoBrokerOptions& options)
{
    const Kind elsewhere = options.replica ? Replica : Server;
    fKindBox->setCurrentIndex(options.sentinel.empty() ? elsewhere : Sentinels);
    fNameEdit->setText(QString::fromStdString(options.sentinel));
}

bool NodesField::areSentinels() const
{
    return fKindBox->currentIndex() == Sentinels;
}

void NodesField::store(ZoBrokerOptions& options) const
{
    options.replica = fKindBox->currentIndex() == Replica;
    options.sentinel = areSentinels() ? fNameEdit->text().trimmed().toStdString() : std::string();
    if (areSentinels() && options.sentinel.empty())
        throw ZoError(tr("Sentinels watch several servers: say what they call the robot's, or "
                         "choose what else the address leads to.")
                          .toStdString());
}

void NodesField::xUpdate()
{
    fNameEdit->setVisible(areSentinels());
    emit changed();
}
