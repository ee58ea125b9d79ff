// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

#include "CoreApplicationUtils.h"

#include "QObjectEventFilter.h"
#include "logrecord_p.h"
#include "processstate_p.h"

#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QStringList>
#include <QWidget>
#include <QtDebug>

using namespace OrvaUtilsPrivate;

namespace {

struct Identity
{
    QString mApplicationCompanyName;
    QString mApplicationName;
    QString mApplicationVersion;
    QString mApplicationRevision;
    CoreApplicationUtils::CodeApplication mCodeApplication = CoreApplicationUtils::Undefined;
};

Identity& identity()
{
    return processState<Identity>();
}

struct FamilyMember
{
    const char* guiName; // null: the stored application name
    const char* shortName;
    const char* key;
};

// Null for Undefined and for unknown codes.
const FamilyMember* familyMember(CoreApplicationUtils::CodeApplication code)
{
    static const FamilyMember members[] = {
        {"Palnor Grid", "Lorn", "lorn"},   {nullptr, "Dunvale", "dunvend"},
        {"Palnor Fx", "Sorrel", "sorrel"}, {"Tamsel", "Tamsel 2", "tamsel2"},
        {"Lexaro", "Lexaro", "lexaro"},    {"Portwin", "Portwin", "portwin"},
    };
    if (code < CoreApplicationUtils::Lorn || code > CoreApplicationUtils::Portwin)
        return nullptr;
    return &members[code - CoreApplicationUtils::Lorn];
}

QString undefinedKey()
{
    return QStringLiteral("undefined key");
}

} // namespace

CoreApplicationUtils::CoreApplicationUtils(QObject* parent)
    : QObject(parent)
{ }

CoreApplicationUtils::~CoreApplicationUtils() = default;

bool CoreApplicationUtils::initStartupVars()
{
    if (applicationCode() == Undefined) {
        qDebug("initStartupVars FAILED ! initCoreApplication must be called in main.cpp !!!!");
        return false;
    }
    const QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return true;
    QCoreApplication::setOrganizationName(applicationCompanyName());
    QCoreApplication::setOrganizationDomain(applicationCompanyName().toLower()
                                            + QStringLiteral(".com"));
    QCoreApplication::setApplicationName(applicationName());
    QCoreApplication::setApplicationVersion(applicationVersion());
    if (qobject_cast<const QGuiApplication*>(application))
        QGuiApplication::setWindowIcon(QIcon(iconApplication()));
    return true;
}

QString CoreApplicationUtils::applicationGuiName()
{
    const FamilyMember* member = familyMember(applicationCode());
    return member && member->guiName ? QString::fromLatin1(member->guiName) : applicationName();
}

QString CoreApplicationUtils::applicationShortName()
{
    const CodeApplication code = applicationCode();
    if (const FamilyMember* member = familyMember(code))
        return QString::fromLatin1(member->shortName);
    ORVAUTILS_LOG_INFO() << "CoreApplicationUtils " << int(code);
    return undefinedKey();
}

QString CoreApplicationUtils::applicationKeyToString(CodeApplication code)
{
    const FamilyMember* member = familyMember(code);
    return member ? QString::fromLatin1(member->key) : undefinedKey();
}

QString CoreApplicationUtils::applicationKey()
{
    return applicationKeyToString(applicationCode());
}

int CoreApplicationUtils::versionToNumber(int major, int minor, int patch)
{
    // Unsigned, because shifting a negative number, or a bit into the sign, is undefined.
    return int((uint(major) << 16) | (uint(minor) << 8) | uint(patch));
}

int CoreApplicationUtils::versionToNumber(const QString& version)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    if (parts.size() != 3)
        return 0;
    return versionToNumber(parts[0].toInt(), parts[1].toInt(), parts[2].toInt());
}

int CoreApplicationUtils::applicationVersionNumber()
{
    return versionToNumber(applicationVersion());
}

QString CoreApplicationUtils::iconApplication()
{
    return QStringLiteral(":/app-icons/icon.png");
}

void CoreApplicationUtils::fixOSXDialogFocusBug()
{
    // Only a QApplication knows about modal widgets; Qt does not check the type of the object.
    auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application || !QApplication::activeModalWidget())
        return;
    QObjectEventFilter::filter(application, [](QObject*, QEvent* event) {
        if (event->type() == QEvent::FocusIn) {
            if (QWidget* modal = QApplication::activeModalWidget())
                modal->raise();
        }
        return false;
    });
}

void CoreApplicationUtils::setApplicationCompanyName(const QString& companyName)
{
    identity().mApplicationCompanyName = companyName;
}

void CoreApplicationUtils::setApplicationName(const QString& name)
{
    identity().mApplicationName = name;
}

void CoreApplicationUtils::setApplicationVersion(const QString& version)
{
    identity().mApplicationVersion = version;
}

void CoreApplicationUtils::setApplicationRevision(const QString& revision)
{
    identity().mApplicationRevision = revision;
}

void CoreApplicationUtils::setApplicationCode(const CodeApplication& code)
{
    identity().mCodeApplication = code;
}

QString CoreApplicationUtils::applicationCompanyName()
{
    return identity().mApplicationCompanyName;
}

QString CoreApplicationUtils::applicationName()
{
    return identity().mApplicationName;
}

QString CoreApplicationUtils::applicationVersion()
{
    return identity().mApplicationVersion;
}

QString CoreApplicationUtils::applicationRevision()
{
    return identity().mApplicationRevision;
}

CoreApplicationUtils::CodeApplication CoreApplicationUtils::applicationCode()
{
    return identity().mCodeApplication;
}
