// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <boost/shared_ptr.hpp>

#include <string>

class Model;
class Module;
class QString;
class TiXmlElement;

/// The configuration file: which keys are followed, under which alias, with which flags and
/// colours. Never instantiated; a QObject for the translation of its messages. GUI thread only.
class ConfigManager : public QObject
{
    Q_OBJECT

public:
    /// Reads an attribute as an integer. False, and `target` as it was, when there is none. Text
    /// that is no number counts as present; the value is then unspecified.
    static bool readInt(const std::string& name, const TiXmlElement* element, int& target);
    /// The same for a flag: any integer but 0 is true.
    static bool readBool(const std::string& name, const TiXmlElement* element, bool& target);

    /// Appends one element per key to `root`, in the model's order, under its read lock. Always
    /// true.
    static bool saveConfiguration(boost::shared_ptr<Model const> model, TiXmlElement* root);
    /// Adds the key of each element to the module, in document order. False only when `root` is
    /// null. Does not return when an element lacks its name or its alias.
    static bool loadConfiguration(boost::shared_ptr<Module> module, const TiXmlElement* root);

    /// Replaces the file by the model's keys. Throws std::runtime_error, with a translated
    /// message in UTF-8, when it cannot be opened; a failed write goes unnoticed.
    /// Saving into a pipe waits for its reader, and raises no signal when that is gone.
    static void saveConfigurationFile(boost::shared_ptr<Model const> model, const QString& path);
    /// Adds the file's keys to those that the module holds. Throws std::runtime_error, with a
    /// translated message in UTF-8, when the file cannot be opened, is no XML or no configuration;
    /// nothing was added then. After success the file stays open.
    static void loadConfigurationFile(boost::shared_ptr<Module> module, const QString& path);
};
