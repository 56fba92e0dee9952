#pragma once

#include <locale>
#include <string>

namespace orvantis::testing {

/// Makes a locale global that writes numbers unlike the classic one (1.234.567,5 and ja/nein) while it lives.
class GroupingLocale {
 public:
  GroupingLocale() : previous_(std::locale::global(std::locale(std::locale::classic(), new Facet))) {}
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;
  ~GroupingLocale() { std::locale::global(previous_); }

 private:
  struct Facet : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "ja"; }
    std::string do_falsename() const override { return "nein"; }
  };

  std::locale previous_;
};

}  // namespace orvantis::testing
