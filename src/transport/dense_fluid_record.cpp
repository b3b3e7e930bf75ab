#include "transport/dense_fluid_record.h"

namespace talix {

constinit DenseFluidConstants dense_fluid{};
constinit DenseFluidMixture dense_mixture{};
constinit DenseFluidCall dense_call{};

namespace {

constexpr DenseFluidConstants kMethaneReference{
    .RGL = 0.08205616F,
    .TCREF = 190.53F,
    .PCREF = 45.344F,
    .RHOCREF = 10.104F,
    .ZCREF = 0.287046F,
    .WREF = 0.011F,
    .MWREF = 16.04F,
    .A = {{0.090569F, -0.862762F, 0.316636F, -0.465684F}},
    .B = {{0.394901F, -1.023545F, -0.932813F, -0.754639F}},
    .C = {{1.16145F, 0.14874F, 0.52487F, 0.7732F, 2.16178F, 2.43787F}},
    .ETA0K = 7.67035F,
    .EPSK = 148.6F,
    .GV = {{1.696986F, -0.13337235F, 1.4F, 168.0F}},
    .EV = {{-10.2391605F, 174.228226F, 17.4605465F, -2847.63281F, 0.133685023F, 142.072403F, 5002.06689F}},
    .RHOV = 0.1628F,
    .GL = {{-0.252762914F, 0.334328592F, 1.12F, 168.0F}},
    .EL = {{-7.14591312F, 81.3209381F, 12.4215708F, -950.983093F, 0.493518144F, 41.4513893F, 590.887024F}},
    .RHOL = 0.1628F,
};

}  // namespace

void set_dense_fluid_constants() { dense_fluid = kMethaneReference; }

void reset_dense_fluid_record() {
  dense_fluid = DenseFluidConstants{};
  dense_mixture = DenseFluidMixture{};
  dense_call.filled = false;
}

}  // namespace talix
