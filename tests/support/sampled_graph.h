// SPDX-License-Identifier: MIT
#pragma once

#include "graph.h"
#include "model.h"

#include <boost/make_shared.hpp>

#include <QStringList>

/// A model in which each of `aliases` has the number 3.
inline boost::shared_ptr<Model> modelWith(const QStringList& aliases)
{
    auto model = boost::make_shared<Model>();
    for (const QString& alias : aliases) {
        const std::string text = alias.toLatin1().toStdString();
        model->addSTMVal("key/" + text, text);
        model->refreshSTMVal("key/" + text, ZoValue(3));
    }
    return model;
}

inline QList<TimeValue>& samplesOf(Graph& graph, const QString& name)
{
    return graph.fSeries[name].second;
}

inline QList<double> timesOf(const QList<TimeValue>& samples)
{
    QList<double> times;
    for (const TimeValue& sample : samples)
        times.append(sample.first);
    return times;
}

/// So many steps that one of them has pruned: the counter is the process's.
inline void stepUntilPruned(Graph& graph)
{
    for (int i = 0; i < 10; ++i)
        graph.xUpdateTime();
}
