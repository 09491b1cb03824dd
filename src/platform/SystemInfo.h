#pragma once

#include <QString>

// Facts about the machine that the start-up asks for.
class SystemInfo
{
public:
    virtual ~SystemInfo() = default;
    // The English name of the user's country ("Italy", "United States").
    virtual QString countryEnglishName() = 0;
    // Takes the one-instance lock of this program folder; false when
    // another instance of the program already holds it.
    virtual bool acquireInstanceLock() = 0;
};
