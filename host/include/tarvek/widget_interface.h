// SPDX-License-Identifier: MIT
#pragma once

#include <tarvek/export.h>

#include <zo/broker.h>

#include <boost/shared_ptr.hpp>

#include <QMetaType>
#include <QtPlugin>

#include <string>

class QWidget;
class TarvekWidget;

/// What a plug-in of Tarvek Desktop implements. Everything here is called on the GUI thread.
class TARVEK_EXPORT WidgetInterface
{
public:
    WidgetInterface();
    virtual ~WidgetInterface();
    WidgetInterface(const WidgetInterface&) = delete;
    WidgetInterface& operator=(const WidgetInterface&) = delete;

    /// Makes one panel for the robot at `ip` and `port`, with `parent` (never null) as its parent
    /// widget. `imageDir` is the host's resource directory and ends in "/". Returns null when the
    /// user changed their mind; throws when the panel cannot be made.
    virtual TarvekWidget* getWidget(QWidget* parent, const std::string& ip, int port,
                                    const std::string& imageDir) = 0;

    /// Whether a panel can only be made with a robot connected: true unless overridden.
    virtual bool requiresConnection() const;

    /// Makes the middleware's local broker, called `brokerName` and connected to the robot at
    /// `ip` and `port` with `fBrokerOptions`, and stores it in `broker`. Throws ZoError, and
    /// leaves `broker` as it was, when the robot cannot be reached. Where no connection is required
    /// it waits for none: the broker goes on trying to get one. `imageDir` is not used.
    void initBroker(boost::shared_ptr<ZoBroker>& broker, const std::string& brokerName,
                    const std::string& ip, int port, const std::string& imageDir);

    boost::shared_ptr<ZoBroker> fBroker; ///< of the panel made last
    TarvekWidget* fPanel = nullptr;      ///< made last; owned by its parent
    QWidget* fParent = nullptr;          ///< handed to the last getWidget
    /// Set by the host before it calls getWidget; the password is gone when that has returned.
    ZoBrokerOptions fBrokerOptions;
};

/// The description of a plug-in, which Q_PLUGIN_METADATA names, may have these texts: "name", that
/// of its panel, "opens", the root element of the XML files that the panel asks for, and
/// "catalogue": the plug-in has its texts in other languages in resources of this name, as
/// ":/translations/CATALOGUE_de.qm", and the host has them used.
Q_DECLARE_INTERFACE(WidgetInterface, "org.tarvek.desktop.WidgetInterface/0.1")
Q_DECLARE_METATYPE(WidgetInterface*)
