#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "library/json/json.h"

namespace tavrohost_test {

// One function as GetPortWWNs tells it.
struct ToldFunction {
    std::string key;
    std::string address;
    std::uint32_t number = 0;
    std::uint32_t type = 0;
    std::string secondText;
};

// Captured answers, written down one by one.
class Answers {
  public:
    Answers& Query(const char* call, const std::string& request, tavrolib::Json output) {
        tavrolib::Json answer = tavrolib::Json::object();
        answer["call"] = call;
        if (!request.empty()) {
            answer["request"] = request;
        }
        return Add(std::move(answer), std::move(output));
    }

    Answers& Operation(int code, const std::string& request, tavrolib::Json output,
                       const tavrolib::Json& input = {}) {
        tavrolib::Json answer = tavrolib::Json::object();
        answer["call"] = "DoOperation";
        answer["operation"] = code;
        answer["request"] = request;
        if (!input.is_null()) {
            answer["input"] = input;
        }
        return Add(std::move(answer), std::move(output));
    }

    // An adapter with one port, which has these functions.
    Answers& Port(const std::vector<ToldFunction>& functions) {
        using tavrolib::Json;
        Query("GetDiscoveredAdapters", {},
              Json::array({Json::array({"Adapter 4610K", 2, Json::array({"Port 1"})})}));
        Json addresses = Json::array();
        Json identities = Json::array();
        for (const ToldFunction& function : functions) {
            addresses.push_back(Json::array({function.key, function.address, function.number}));
            identities.push_back(Json::array({function.key, function.type, function.secondText}));
        }
        Query("GetPortWWNs", {}, Json::array({addresses, identities}));
        answers_.back()["adapter"] = "Adapter 4610K";
        answers_.back()["port"] = "Port 1";
        return *this;
    }

    // Makes a refusal of the last answer.
    void Refuse() { answers_.back()["status"] = 5; }

    const tavrolib::Json& All() const { return answers_; }

  private:
    Answers& Add(tavrolib::Json answer, tavrolib::Json output) {
        answer["status"] = 0;
        answer["output"] = std::move(output);
        answers_.push_back(std::move(answer));
        return *this;
    }

    tavrolib::Json answers_ = tavrolib::Json::array();
};

}  // namespace tavrohost_test
