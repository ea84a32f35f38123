#include "sample_provider.h"

#include <stdexcept>

namespace tavrolib_test {
namespace {

using tavrolib::Call;
using tavrolib::Outcome;

class SampleProvider : public tavrolib::Provider {
  public:
    std::string EnvironmentPrefix() const override { return SamplePrefix; }

    std::wstring Description() const override { return SampleDescription; }

    Outcome Configure() override {
        sample_.asked.emplace_back("configure");
        return sample_.configured;
    }

    std::optional<Outcome> Intercept(const Call& call) override {
        sample_.asked.push_back("intercept " + std::string(RowOf(call.entryPoint).name));
        return sample_.intercepted;
    }

    Outcome Open() override {
        sample_.asked.emplace_back("open");
        return sample_.opened;
    }

    Outcome Serve(const Call& call) override {
        sample_.asked.push_back("serve " + std::string(RowOf(call.entryPoint).name));
        if (sample_.thrown != nullptr) {
            throw std::runtime_error(sample_.thrown);
        }
        return sample_.served;
    }

  private:
    Sample& sample_ = Sample::Instance();
};

}  // namespace

Sample& Sample::Instance() {
    static Sample sample;
    return sample;
}

}  // namespace tavrolib_test

std::unique_ptr<tavrolib::Provider> tavrolib::MakeProvider() {
    return std::make_unique<tavrolib_test::SampleProvider>();
}
