#include <filter/monitor/LineCounter.h>

namespace orvantis::filter::monitor {

const char* describe(CrossingVerdict verdict) {
  switch (verdict) {
    case CrossingVerdict::NoSuchLine:
      return "there is no line of that name";
    case CrossingVerdict::NoLength:
      return "the line's ends are the same point or not finite, so it has no sides";
    case CrossingVerdict::NoIdentity:
      return "an id below zero is not an identity";
    case CrossingVerdict::NotSeen:
      return "was not seen, or is forgotten";
    case CrossingVerdict::NeverClear:
      return "has not been clear of the line yet";
    case CrossingVerdict::NotOver:
      return "has stayed clear of the line on one side";
    case CrossingVerdict::OnLine:
      return "is not clear of the line now";
    case CrossingVerdict::TurnedBack:
      return "came to the line and turned back";
    case CrossingVerdict::PassedBeside:
      return "changed sides beside the line's ends";
    case CrossingVerdict::Jumped:
      return "was faster than the maximum speed, so it was taken for another object";
    case CrossingVerdict::Counted:
      return "went over the line";
    case CrossingVerdict::BeganOnLine:
      return "was not clear of the line when it was first seen, and has been clear on one side since";
  }
  return "";
}

}  // namespace orvantis::filter::monitor
