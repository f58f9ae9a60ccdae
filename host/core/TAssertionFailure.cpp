#include "TAssertionFailure.h"

#include <sstream>

#include <boost/assert.hpp>

namespace NVURZENTA20 {

namespace {

std::string DescribeAssertion(const std::string& expression, const std::string& file, long line) {
    std::ostringstream out;
    out << "assertion failed: " << expression << " (" << file << ":" << line << ")";
    return out.str();
}

}  // namespace

TAssertionFailure::TAssertionFailure(const std::string& expression, const std::string& file, long line)
    : std::logic_error(DescribeAssertion(expression, file, line)), fExpression(expression), fFile(file),
      fLine(line) {}

}  // namespace NVURZENTA20

// Every target of the build defines BOOST_ENABLE_ASSERT_HANDLER, so a failed
// Boost assertion (typically a null shared pointer dereferenced) lands here.
// Throwing fails the one request that made the mistake; aborting would take
// the host and every other plug-in down with it.
namespace boost {

void assertion_failed(char const* expr, char const* /*function*/, char const* file, long line) {
    throw NVURZENTA20::TAssertionFailure(expr, file, line);
}

void assertion_failed_msg(char const* expr, char const* msg, char const* /*function*/, char const* file,
                          long line) {
    throw NVURZENTA20::TAssertionFailure(std::string(expr) + " (" + msg + ")", file, line);
}

}  // namespace boost
