// SPDX-License-Identifier: MIT
// A whole panel that tells tests what the host does with it: through its dynamic properties, and
// through a button whose slot throws.

#include <tarvek/tarvek_widget.h>
#include <tarvek/widget_interface.h>

#include <zo/error.h>

#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

class ProbePanel : public TarvekWidget
{
    Q_OBJECT

public:
    explicit ProbePanel(QWidget* parent) : TarvekWidget(parent)
    {
        setObjectName("probe");
        setProperty("disconnections", 0);
        auto* layout = new QVBoxLayout(this);
        auto* button = new QPushButton("Throw", this);
        layout->addWidget(button);
        auto* ticker = new QTimer(this);
        ticker->setObjectName("ticker");
        ticker->setInterval(10);
        connect(button, &QPushButton::clicked, this, &ProbePanel::xThrow);
        connect(ticker, &QTimer::timeout, this, &ProbePanel::xThrow);
        connect(this, &TarvekWidget::disconnected, this, &ProbePanel::xCount);
    }

private slots:
    void xThrow() { throw ZoError("the probe broke off"); }
    void xCount(WidgetInterface* plugin)
    {
        setProperty("disconnections", property("disconnections").toInt() + 1);
        setProperty("disconnectedBy", QVariant::fromValue(plugin));
    }
};

class Probe : public QObject, public WidgetInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.tarvek.desktop.WidgetInterface/0.1" FILE "probe.json")
    Q_INTERFACES(WidgetInterface)

public:
    TarvekWidget* getWidget(QWidget* parent, const std::string& ip, int port,
                            const std::string& imageDir) override
    {
        fParent = parent;
        const QWidget* const window = parent->window(); // tells what this panel is to do
        if (window->property("ownLink").toBool())
            fBrokerOptions.pingInterval *= 2; // other options than the window's
        if (const QString user = window->property("ownUser").toString(); !user.isEmpty())
            fBrokerOptions.user = user.toStdString();
        initBroker(fBroker, "Probe", ip, port, imageDir);
        auto* panel = new ProbePanel(parent);
        fPanel = panel;
        panel->setProperty("imageDir", QString::fromStdString(imageDir));
        panel->setProperty("user", QString::fromStdString(fBrokerOptions.user));
        parent->setWindowTitle(window->property("titleOfPanels").toString());
        if (window->property("askFirst").toBool() && !ask(parent)) {
            delete panel;
            fPanel = nullptr;
        }
        if (window->property("thenFail").toBool())
            throw ZoError("the probe broke off");
        return fPanel;
    }

private:
    static bool ask(QWidget* parent)
    {
        QDialog outer(parent);
        outer.setObjectName("probeDialog");
        QTimer::singleShot(0, &outer, [&outer] {
            QDialog inner(&outer);
            inner.setObjectName("innerProbeDialog");
            inner.exec();
        });
        return outer.exec() == QDialog::Accepted;
    }
};

#include "probe.moc"
