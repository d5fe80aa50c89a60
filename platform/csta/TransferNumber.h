#pragma once

/// The origin of an entry's number.
struct TransferNumber {
    enum TransferNumberType : int { eNotTransferred = 0, eTransferred = 1 };
};
