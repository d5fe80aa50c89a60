#pragma once

#include <string>

#include "host/history/CallStatistics.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class NumberTexts;
class Router;

/// The statistics of the history. Thread-safe.
class StatisticsResource {
public:
    /// As `CallStatistics`.
    StatisticsResource(Database& database, const std::string& line, DigitAnalysisServiceIfc* digits,
                       NumberTexts& numbers)
        : m_statistics(database, line, digits), m_numbers(numbers) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse statistics(const HttpRequest& request) const;

    const CallStatistics m_statistics;
    NumberTexts& m_numbers;
    const Zone m_zone = Zone::ofMachine();
};

}  // namespace host
