// SPDX-License-Identifier: MIT
/// The words that the registry layer shares; a list's position is the value of the enumerator that it names.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace quendar {

static QStringList words(const QString &text) {
    return text.split(QLatin1Char(','));
}

const QString uuidPlaceholder = QStringLiteral("{UUID}");
const QString rootNodeName = QStringLiteral("root");

const QStringList regNodeTypes = words(QStringLiteral("dir,key,value,default"));
const QStringList regEntryParams = words(QStringLiteral("value,type,regexp"));
const QStringList regEntryTypes = words(QStringLiteral("string,rc4,uuid,char,ipv4,number,float,date,bool"));
const QStringList changeStates = words(QStringLiteral("modified,created,deleted,nothing"));
const QStringList trueWords = words(QStringLiteral("yes,true,on,1,ok"));
const QStringList falseWords = words(QStringLiteral("no,false,off,0,ko"));

} // namespace quendar
