#include "document/JsonFault.h"

#include "document/Excerpt.h"
#include "document/LocatedJson.h"
#include "document/faults/Diagnosis.h"

namespace orvantis::toolkit {

Finding describe(const SyntaxFault& fault, std::string_view text) {
  const Diagnosis::Cause cause = Diagnosis(fault, text).find();
  return {FindingKind::JsonFault, positionOf(text, cause.offset), "", cause.text,
          cause.canBeShown ? excerptAt(text, cause.offset) : std::string()};
}

}  // namespace orvantis::toolkit
