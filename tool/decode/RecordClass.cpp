// SPDX-License-Identifier: Apache-2.0
#include "RecordClass.h"

#include <algorithm>
#include <strings.h>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "FieldTable.h"

namespace recordkit::tool {

const std::vector<RecordClass>& recordClasses()
{
    static const std::vector<RecordClass> all = [] {
        std::vector<RecordClass> classes;
        for (const auto& subsystem : {serialClasses(), hardwareClasses(), versionClasses(),
                                      selClasses(), sensorClasses(), fruClasses()}) {
            classes.insert(classes.end(), subsystem.begin(), subsystem.end());
        }
        return classes;
    }();
    return all;
}

const RecordClass* findRecordClass(const std::string& name)
{
    const auto& all = recordClasses();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const RecordClass& each) {
        return ::strcasecmp(each.name, name.c_str()) == 0;
    });
    return found == all.end() ? nullptr : &*found;
}

std::string hexMeaning(const Json& value)
{
    return fmt::format("{:X}h", value.get<unsigned int>());
}

std::string sensorTypeMeaning(const Json& value)
{
    return sensorTypeName(value.get<unsigned char>());
}

std::string eventTypeMeaning(const Json& value)
{
    return eventTypeName(value.get<unsigned char>());
}

}
