// The exception the host's Boost assertion handler throws. A failed
// assertion (a null shared pointer dereferenced, for example) fails the
// request that made it instead of taking the whole process down.
#ifndef ZENTA_HOST_TASSERTIONFAILURE_H
#define ZENTA_HOST_TASSERTIONFAILURE_H

#include <stdexcept>
#include <string>

namespace NVURZENTA20 {

class TAssertionFailure : public std::logic_error {
public:
    TAssertionFailure(const std::string& expression, const std::string& file, long line);

    const std::string& GetExpression() const { return fExpression; }
    const std::string& GetFile() const { return fFile; }
    long GetLine() const { return fLine; }

private:
    std::string fExpression;
    std::string fFile;
    long fLine;
};

}  // namespace NVURZENTA20

#endif
