// orvane-ups-sim: a UPS on a pseudo-terminal, for trying the program without one.
#include "simulate/simulator.h"
#include "simulate/ups_model.h"

int main(int argc, char** argv) {
  orvane::UpsModel ups;
  orvane::OrderTable orders;
  orvane::AddUpsOrders(orders, ups);
  return orvane::RunSimulator(argc, argv,
                              {.program = "orvane-ups-sim",
                               .about = "A simulated UPS on a pseudo-terminal, at 2400 baud.",
                               .baud = 2400},
                              ups, orders);
}
