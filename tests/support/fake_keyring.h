// SPDX-License-Identifier: MIT
#pragma once

#include "robots/keyring.h"

#include <QTimer>

#include <map>

/// What a keyring holds, for tests that look into it; each made of it is another door to the same.
class FakeKeyring : public Keyring
{
public:
    struct Content
    {
        std::map<QString, std::string> passwords;
        int questions = 0; ///< how often it was read
        bool isBroken = false;
        bool isSilent = false; ///< while it asks its user to unlock it
    };

    explicit FakeKeyring(std::shared_ptr<Content> content) : fContent(std::move(content)) {}

    void read(const QString& name, const Found& found) override
    {
        ++fContent->questions;
        // Later, as a keyring does.
        QTimer::singleShot(0, &fContext, [content = fContent, name, found] {
            const auto kept = content->passwords.find(name);
            std::string password = kept == content->passwords.end() ? "" : kept->second;
            if (!content->isSilent)
                found(password);
        });
    }
    void write(const QString& name, const std::string& password, const Failed& failed) override
    {
        if (fContent->isBroken)
            QTimer::singleShot(0, &fContext, [failed] { failed("there is no keyring"); });
        else
            fContent->passwords[name] = password;
    }
    void forget(const QString& name) override { fContent->passwords.erase(name); }

private:
    std::shared_ptr<Content> fContent;
    QObject fContext;
};
