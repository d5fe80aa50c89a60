#pragma once

/// How the number of an entry came about.
struct TransferNumber {
    enum TransferNumberType : int { eNotTransferred = 0, eTransferred = 1 };
};
