#pragma once

class QCoreApplication;
class QLocale;

// Installs the assistant's own translation and Qt's for the locale. English is
// the source language and needs only its plural forms. True when the assistant's
// own was found.
bool installTranslations(QCoreApplication& app, const QLocale& locale);
