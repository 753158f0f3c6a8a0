// orvane-modem-sim: a modem on a pseudo-terminal, for trying emergency calls without one.
#include "simulate/modem_model.h"
#include "simulate/simulator.h"

int main(int argc, char** argv) {
  orvane::ModemModel modem;
  orvane::OrderTable orders;
  orvane::AddModemOrders(orders, modem);
  return orvane::RunSimulator(argc, argv,
                              {.program = "orvane-modem-sim",
                               .about = "A modem on a pseudo-terminal, for trying emergency calls.",
                               .baud = 9600},
                              modem, orders);
}
