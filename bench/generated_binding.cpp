#include "operation.h"

#include "questionpool.hxx"

#include <memory>
#include <xercesc/util/PlatformUtils.hpp>

// The objects that a generator makes of a schema: what one would have without writing a reader.
namespace norvakavlor::bench {

std::vector<Operation> generatedBinding() {
    return {{"xsd binding questionpool",
             [](const Documents& documents) -> Round {
                 xercesc::XMLPlatformUtils::Initialize();
                 return [path = documents.document("questionpool")] {
                     return keep(std::shared_ptr<::questionPool>(::questionPool_(
                         path, xml_schema::flags::dont_validate | xml_schema::flags::dont_initialize)));
                 };
             },
             nullptr}};
}

} // namespace norvakavlor::bench
