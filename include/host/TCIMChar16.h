// A CIM 16-bit character (UCS-2 code unit).
#ifndef ZENTA_HOST_TCIMCHAR16_H
#define ZENTA_HOST_TCIMCHAR16_H

namespace NVURZENTA20 {

class TCIMChar16 {
public:
    TCIMChar16(unsigned short value = 0) : fValue(value) {}
    ~TCIMChar16() {}

    unsigned short GetValue() const { return fValue; }
    bool operator==(const TCIMChar16& other) const { return fValue == other.fValue; }
    bool operator!=(const TCIMChar16& other) const { return fValue != other.fValue; }

private:
    unsigned short fValue;
};

}  // namespace NVURZENTA20

#endif
