#pragma once

namespace host {

class Authenticator;
class Router;

/// Adds the routes by which a browser gets its cookie for the token, and removes the cookie. They need no
/// token. The authenticator is borrowed and outlives the router.
void addSessionRoutes(const Authenticator& authenticator, Router& router);

}  // namespace host
