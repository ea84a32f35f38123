#pragma once

// The parameters that the model's ports negotiate: what a port proposes is what a session gets.
namespace tavrosim {

struct IscsiParameters {
    const char* maxConnections = "1";
    const char* initialR2T = "No";
    const char* immediateData = "Yes";
    const char* maxBurstLength = "262144";
    const char* firstBurstLength = "65536";
    const char* timeToWait = "2";
    const char* timeToRetain = "20";
    const char* maxOutstandingR2T = "1";
    const char* dataPduInOrder = "Yes";
    const char* dataSequenceInOrder = "Yes";
    const char* errorRecoveryLevel = "0";
    const char* maxReceiveLength = "65536";
    const char* maxTransmitLength = "8192";
    const char* headerDigest = "No";
    const char* dataDigest = "No";
};

inline constexpr IscsiParameters DefaultParameters;

}  // namespace tavrosim
